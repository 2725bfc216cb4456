#include "qt/header_view_ext.h"

#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionHeader>
#include <QTableView>
#include <algorithm>

#include "base/log.h"

QHeaderViewExt::QHeaderViewExt(Qt::Orientation orientation, QWidget* parent)
    : QHeaderView(orientation, parent) {
  connect(this, SIGNAL(sectionResized(int, int, int)), this, SLOT(OnLayoutTitleWidgets()));
  connect(this, SIGNAL(sectionMoved(int, int, int)), this, SLOT(OnLayoutTitleWidgets()));
  connect(this, SIGNAL(sectionCountChanged(int, int)), this, SLOT(OnLayoutTitleWidgets()));
  connect(this, SIGNAL(geometriesChanged()), this, SLOT(OnLayoutTitleWidgets()));
}

QHeaderViewExt::~QHeaderViewExt() = default;

QHeaderViewExt* QHeaderViewExt::Install(QTableView* view) {
  OVUI_CHECK(view != NULL, nullptr);
  QHeaderView* old = view->horizontalHeader();
  // Installed already, title widgets and all: keep it.
  if (auto* installed = qobject_cast<QHeaderViewExt*>(old)) return installed;
  auto* header = new QHeaderViewExt(Qt::Horizontal, view);
  header->setObjectName(old->objectName());
  const bool hidden = old->isHidden();
  // The view connects its sorting to the header it has when sorting is
  // switched on, so sorting is switched on again for the new one.
  const bool sorting = view->isSortingEnabled();
  const QByteArray state = old->saveState();
  view->setHorizontalHeader(header);
  // Sizes, order, hidden sections, sort indicator, clickable and movable
  // sections, stretch and alignment all travel in the saved state.
  header->restoreState(state);
  if (sorting) view->setSortingEnabled(true);
  header->setVisible(!hidden);
  header->FollowViewScrollBar();
  return header;
}

bool QHeaderViewExt::setTitleWidget(int logicalIndex, QWidget* widget) {
  OVUI_CHECK(orientation() == Qt::Horizontal, false);
  OVUI_CHECK(logicalIndex >= 0, false);
  auto it = this->title_widgets.find(logicalIndex);
  QWidget* old = it != this->title_widgets.end() ? it->second.data() : nullptr;
  if (old == widget) return true;
  if (widget) {
    // A widget moved from another section is not deleted there.
    for (auto& entry : this->title_widgets) {
      if (entry.second == widget) entry.second = nullptr;
    }
    widget->setParent(viewport());
    this->title_widgets[logicalIndex] = widget;
  } else if (it != this->title_widgets.end()) {
    this->title_widgets.erase(it);
  }
  delete old;
  TitleWidgetsChanged();
  return true;
}

QWidget* QHeaderViewExt::titleWidget(int logicalIndex) const {
  auto it = this->title_widgets.find(logicalIndex);
  return it != this->title_widgets.end() ? it->second.data() : nullptr;
}

int QHeaderViewExt::titleWidgetHeight() const {
  int height = 0;
  for (const auto& entry : this->title_widgets) {
    if (entry.second) height = std::max(height, entry.second->sizeHint().height());
  }
  return height;
}

QSize QHeaderViewExt::sizeHint() const {
  QSize size = QHeaderView::sizeHint();
  if (orientation() == Qt::Horizontal) size.rheight() += titleWidgetHeight();
  return size;
}

void QHeaderViewExt::OnLayoutTitleWidgets() {
  const int strip = titleWidgetHeight();
  const int top = viewport()->height() - strip;
  for (const auto& entry : this->title_widgets) {
    QWidget* widget = entry.second;
    if (!widget) continue;
    const int logical = entry.first;
    const bool shown = logical < count() && !isSectionHidden(logical) && sectionSize(logical) > 0;
    if (shown) {
      widget->setGeometry(sectionViewportPosition(logical), top, sectionSize(logical), strip);
    }
    widget->setVisible(shown);
  }
}

void QHeaderViewExt::paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const {
  const int strip = orientation() == Qt::Horizontal ? titleWidgetHeight() : 0;
  if (strip <= 0 || strip >= rect.height()) {
    QHeaderView::paintSection(painter, rect, logicalIndex);
    return;
  }
  // The strip gets the plain section background; a widget whose section is
  // hidden or missing leaves no hole in it.
  QStyleOptionHeader opt;
  initStyleOption(&opt);
  opt.rect = rect;
  opt.section = logicalIndex;
  style()->drawControl(QStyle::CE_HeaderSection, &opt, painter, this);
  painter->save();
  QHeaderView::paintSection(painter, rect.adjusted(0, 0, 0, -strip), logicalIndex);
  painter->restore();
}

void QHeaderViewExt::resizeEvent(QResizeEvent* event) {
  QHeaderView::resizeEvent(event);
  OnLayoutTitleWidgets();
}

void QHeaderViewExt::showEvent(QShowEvent* event) {
  QHeaderView::showEvent(event);
  FollowViewScrollBar();
  OnLayoutTitleWidgets();
}

void QHeaderViewExt::FollowViewScrollBar() {
  // The view moves the header's offset from its own scroll bar; that
  // connection is made earlier, so the widgets are placed after the offset.
  auto* area = qobject_cast<QAbstractScrollArea*>(parentWidget());
  if (!area) return;
  connect(area->horizontalScrollBar(), SIGNAL(valueChanged(int)), this,
          SLOT(OnLayoutTitleWidgets()), Qt::UniqueConnection);
}

void QHeaderViewExt::TitleWidgetsChanged() {
  // The view sizes its header from sizeHint() when the geometries change.
  updateGeometry();
  emit geometriesChanged();
  viewport()->update();
}
