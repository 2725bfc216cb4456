#include "qt/menu_container_frame.h"

#include <QGuiApplication>
#include <QScreen>

MenuContainerFrame::MenuContainerFrame(QWidget* parent)
    : QFrame(parent, Qt::Popup | Qt::FramelessWindowHint) {
  setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
}

MenuContainerFrame::~MenuContainerFrame() = default;

void MenuContainerFrame::SetAlignRect(const QRect& rect) {
  this->align_rect = rect;
  setMinimumWidth(rect.width());
  adjustSize();
  MoveToAnchor();
}

QPoint MenuContainerFrame::Place(const QRect& anchor, const QSize& size, const QRect& screen) {
  int y = anchor.bottom() + 1;
  if (y + size.height() > screen.bottom() + 1) y = qMax(screen.top(), anchor.top() - size.height());
  int x = anchor.left();
  if (x + size.width() > screen.right() + 1) x = screen.right() + 1 - size.width();
  if (x < screen.left()) x = screen.left();
  return QPoint(x, y);
}

void MenuContainerFrame::showEvent(QShowEvent* event) {
  // The content may have changed the size since the frame was anchored.
  MoveToAnchor();
  QFrame::showEvent(event);
}

void MenuContainerFrame::MoveToAnchor() {
  if (!this->align_rect.isValid()) return;
  QScreen* screen = QGuiApplication::screenAt(this->align_rect.center());
  if (!screen) screen = QGuiApplication::primaryScreen();
  if (!screen) return;
  move(Place(this->align_rect, size(), screen->availableGeometry()));
}
