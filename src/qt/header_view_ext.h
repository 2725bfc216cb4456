#ifndef OVUI_QT_HEADER_VIEW_EXT_H_
#define OVUI_QT_HEADER_VIEW_EXT_H_

#include <QHeaderView>
#include <QPointer>
#include <map>

class QTableView;

// A horizontal header that holds one widget under the title of a section,
// for example a filter line edit per column.
//
// The header grows by the height of its tallest title widget: the titles are
// painted in the upper part, the widgets sit in a strip below them and follow
// their sections when these are resized, moved, hidden or scrolled. A widget
// belongs to a logical index; it is hidden while its section is hidden or
// does not exist.
//
// The title widgets are children of the header's viewport, so a binding walk
// started at the window or the table reaches them like any other child.
//
// Vertical headers take no title widgets; they behave as a plain QHeaderView.
class QHeaderViewExt : public QHeaderView {
  Q_OBJECT

 public:
  explicit QHeaderViewExt(Qt::Orientation orientation, QWidget* parent = nullptr);
  ~QHeaderViewExt() override;

  // Replaces `view`'s horizontal header with a new QHeaderViewExt that keeps
  // the old header's settings (clickable sections, sort indicator, section
  // sizes, stretch, alignment) and returns it; null (logged) for a null view.
  // A view that has one already keeps it, with its title widgets. A table
  // with "binding.header" = "ext" gets one when it is bound; install it
  // before binding to give it title widgets that the same walk binds.
  static QHeaderViewExt* Install(QTableView* view);

  // Puts `widget` under the title of section `logicalIndex` and takes it over;
  // a widget already there is deleted, a null `widget` just removes it. Fails
  // (logged, `widget` stays the caller's) on a vertical header or a negative
  // index.
  bool setTitleWidget(int logicalIndex, QWidget* widget);
  // The widget under section `logicalIndex`, or null.
  QWidget* titleWidget(int logicalIndex) const;
  // Height of the strip that holds the title widgets; 0 without any.
  int titleWidgetHeight() const;

  QSize sizeHint() const override;

 public slots:
  // Places every title widget under its section.
  void OnLayoutTitleWidgets();

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void FollowViewScrollBar();
  void TitleWidgetsChanged();

  std::map<int, QPointer<QWidget>> title_widgets;
};

#endif  // OVUI_QT_HEADER_VIEW_EXT_H_
