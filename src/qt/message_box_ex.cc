#include "qt/message_box_ex.h"

#include <QCursor>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QShowEvent>

#include "mvvm/navigator.h"

QMessageBoxEx::QMessageBoxEx(Icon icon, const QString& title, const QString& text,
                             StandardButtons buttons, QWidget* parent)
    : QMessageBox(icon, title, text, buttons, parent) {}

void QMessageBoxEx::SetPos(int x, int y, bool at_cursor_pos) {
  this->x = x;
  this->y = y;
  this->at_cursor_pos = at_cursor_pos;
}

void QMessageBoxEx::showEvent(QShowEvent* event) {
  QMessageBox::showEvent(event);
  if (this->first_show) {
    this->first_show = false;
    vm::MoveWidget(this, this->x, this->y, this->at_cursor_pos);
  }
}

namespace vm {

void MoveWidget(QWidget* widget, int x, int y, bool at_cursor_pos) {
  if (!widget) return;
  if (at_cursor_pos) {
    const QPoint cursor = QCursor::pos();
    const QRect geometry = widget->geometry();
    x = cursor.x() - geometry.width() / 2;
    y = cursor.y() - geometry.height() / 2;
    widget->move(x < 0 ? 0 : x, y < 0 ? 0 : y);
  } else if (x != -1 && y != -1) {
    widget->move(x, y);
  }
}

void HandlePos(QWidget* widget, NavigatorRequest* request) {
  int x = -1, y = -1;
  bool at_cursor_pos = false;
  if (request) request->GetPos(x, y, at_cursor_pos);
  MoveWidget(widget, x, y, at_cursor_pos);
}

QMessageBox::StandardButton ShowMessageBox(QMessageBox::Icon icon, const QString& title,
                                           const QString& text,
                                           QMessageBox::StandardButtons buttons,
                                           QMessageBox::StandardButton default_button, int x, int y,
                                           bool at_cursor_pos) {
  QMessageBoxEx box(icon, title, text, QMessageBox::NoButton, nullptr);
  box.SetPos(x, y, at_cursor_pos);
  // The standard buttons are single bits from Ok (0x400) up to 0x8000000.
  unsigned int bit = QMessageBox::Ok;
  for (int i = 0; i < 18; ++i, bit <<= 1) {
    const auto standard = static_cast<QMessageBox::StandardButton>(bit);
    if (!(buttons & standard)) continue;
    QPushButton* button = box.addButton(standard);
    if (box.defaultButton()) continue;
    if (default_button != QMessageBox::NoButton) {
      if (standard == default_button) box.setDefaultButton(button);
    } else if (box.buttonRole(button) == QMessageBox::AcceptRole) {
      box.setDefaultButton(button);
    }
  }
  if (box.exec() == -1) return QMessageBox::Cancel;
  return box.standardButton(box.clickedButton());
}

}  // namespace vm
