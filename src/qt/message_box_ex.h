#ifndef OVUI_QT_MESSAGE_BOX_EX_H_
#define OVUI_QT_MESSAGE_BOX_EX_H_

#include <QMessageBox>

class QShowEvent;
class QWidget;

namespace vm {
class NavigatorRequest;
}

// A message box that places itself on its first show, once its size is
// laid out, by the rule of vm::MoveWidget.
class QMessageBoxEx : public QMessageBox {
  Q_OBJECT

 public:
  QMessageBoxEx(Icon icon, const QString& title, const QString& text,
                StandardButtons buttons = NoButton, QWidget* parent = nullptr);

  void SetPos(int x, int y, bool at_cursor_pos);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  bool first_show = true;
  int x = -1;
  int y = -1;
  bool at_cursor_pos = false;
};

namespace vm {

// Places `widget`: centred on the cursor when `at_cursor_pos` (clamped at the
// left and top screen edges only); otherwise at x, y, unless either is -1,
// which leaves the placement to the window system.
void MoveWidget(QWidget* widget, int x, int y, bool at_cursor_pos);

// Places `widget` by the placement parameters of `request` ("x", "y",
// "at_cursor_pos"), for handlers written by applications.
void HandlePos(QWidget* widget, NavigatorRequest* request);

// Runs a modal, parentless QMessageBoxEx with the standard `buttons` and
// returns the button pressed (Cancel when the box closed without one). The
// default button is `default_button`, or without one the first accepting
// button.
QMessageBox::StandardButton ShowMessageBox(QMessageBox::Icon icon, const QString& title,
                                           const QString& text,
                                           QMessageBox::StandardButtons buttons,
                                           QMessageBox::StandardButton default_button, int x, int y,
                                           bool at_cursor_pos);

}  // namespace vm

#endif  // OVUI_QT_MESSAGE_BOX_EX_H_
