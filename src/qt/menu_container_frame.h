#ifndef OVUI_QT_MENU_CONTAINER_FRAME_H_
#define OVUI_QT_MENU_CONTAINER_FRAME_H_

#include <QFrame>
#include <QPoint>
#include <QRect>
#include <QSize>

// A frameless pop-up that places itself against an anchor rectangle, in
// global coordinates: below the anchor when it fits on the screen, otherwise
// above it, and shifted left or right to stay on the screen that holds the
// anchor. It is at least as wide as the anchor. Like every pop-up it closes
// on Escape and on a click outside.
class MenuContainerFrame : public QFrame {
  Q_OBJECT

 public:
  explicit MenuContainerFrame(QWidget* parent = nullptr);
  ~MenuContainerFrame() override;

  // Anchors the frame to `rect` and moves it there.
  void SetAlignRect(const QRect& rect);
  QRect GetAlignRect() const { return this->align_rect; }

  // Where a frame of `size` goes against `anchor` on a screen whose free
  // area is `screen`.
  static QPoint Place(const QRect& anchor, const QSize& size, const QRect& screen);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void MoveToAnchor();

  QRect align_rect;
};

#endif  // OVUI_QT_MENU_CONTAINER_FRAME_H_
