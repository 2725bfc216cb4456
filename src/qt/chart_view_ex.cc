#include "qt/chart_view_ex.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QGraphicsObject>
#include <QMouseEvent>
#include <QPainter>
#include <QtCharts/QAbstractBarSeries>
#include <QtCharts/QBarCategoryAxis>
#include <QtCharts/QBarSet>
#include <QtCharts/QChart>
#include <QtCharts/QLegend>
#include <QtCharts/QScatterSeries>
#include <QtCharts/QXYSeries>
#include <cmath>
#include <vector>

QT_CHARTS_USE_NAMESPACE

namespace {

// Four significant digits, but whole large numbers in full rather than
// in exponent form.
QString Number(double v) {
  const double magnitude = std::fabs(v);
  if (magnitude >= 1e4 && magnitude < 1e15) return QString::number(v, 'f', 0);
  return QString::number(v, 'g', 4);
}

// The line, the dots and the tip, painted as one item in chart coordinates.
class ChartMarker : public QGraphicsObject {
 public:
  struct Entry {
    QColor color;
    QString text;
  };
  struct Dot {
    QPointF at;
    QColor color;
  };

  explicit ChartMarker(QGraphicsItem* parent) : QGraphicsObject(parent) {
    setAcceptedMouseButtons(Qt::NoButton);
    setAcceptHoverEvents(false);
    // Above the series, the axes and the legend.
    setZValue(1000);
  }

  void Set(const QRectF& plot, qreal x, qreal mouse_y, const QString& heading,
           const std::vector<Entry>& entries, const std::vector<Dot>& dots, const QFont& font) {
    prepareGeometryChange();
    this->plot = plot;
    this->x = x;
    this->heading = heading;
    this->entries = entries;
    this->dots = dots;
    this->font = font;
    this->bold = font;
    this->bold.setBold(true);
    Layout(mouse_y);
    update();
  }

  QString Text() const {
    QStringList lines{this->heading};
    for (const Entry& e : this->entries)
      lines.append(e.text);
    return lines.join(QLatin1Char('\n'));
  }

  QLineF Line() const { return QLineF(this->x, this->plot.top(), this->x, this->plot.bottom()); }

  QRectF boundingRect() const override {
    QRectF r = QRectF(this->x - 1, this->plot.top(), 2, this->plot.height()).united(this->tip);
    for (const Dot& d : this->dots)
      r = r.united(QRectF(d.at - QPointF(kDot + 2, kDot + 2), QSizeF(2 * kDot + 4, 2 * kDot + 4)));
    return r;
  }

  void paint(QPainter* p, const QStyleOptionGraphicsItem*, QWidget*) override {
    p->save();
    p->setRenderHint(QPainter::Antialiasing);
    QPen line(QColor(70, 70, 70, 170), 1, Qt::DashLine);
    line.setCosmetic(true);
    p->setPen(line);
    p->drawLine(Line());

    for (const Dot& d : this->dots) {
      p->setPen(QPen(d.color, 2));
      p->setBrush(Qt::white);
      p->drawEllipse(d.at, kDot, kDot);
    }

    // A soft shadow, then the box.
    p->setPen(Qt::NoPen);
    p->setBrush(QColor(0, 0, 0, 28));
    p->drawRoundedRect(this->tip.translated(2, 2), 5, 5);
    p->setPen(QPen(QColor(0, 0, 0, 70), 1));
    p->setBrush(QColor(255, 255, 255, 238));
    p->drawRoundedRect(this->tip, 5, 5);

    const QFontMetricsF plain(this->font), heavy(this->bold);
    qreal y = this->tip.top() + kPad;
    p->setPen(QColor(40, 40, 40));
    p->setFont(this->bold);
    p->drawText(QPointF(this->tip.left() + kPad, y + heavy.ascent()), this->heading);
    y += heavy.height() + kGap;
    p->setFont(this->font);
    for (const Entry& e : this->entries) {
      const qreal swatch = plain.height() * 0.6;
      const QRectF box(this->tip.left() + kPad, y + (plain.height() - swatch) / 2, swatch, swatch);
      p->setPen(Qt::NoPen);
      p->setBrush(e.color);
      p->drawRoundedRect(box, 2, 2);
      p->setPen(QColor(40, 40, 40));
      p->drawText(QPointF(box.right() + kPad * 0.75, y + plain.ascent()), e.text);
      y += plain.height() + kGap;
    }
    p->restore();
  }

 private:
  static constexpr qreal kPad = 8;
  static constexpr qreal kGap = 3;
  static constexpr qreal kDot = 4.5;

  // Right of the line unless that leaves the plot area, level with the mouse
  // but inside the plot area.
  void Layout(qreal mouse_y) {
    const QFontMetricsF plain(this->font), heavy(this->bold);
    qreal width = heavy.horizontalAdvance(this->heading);
    for (const Entry& e : this->entries)
      width = std::max(width, plain.height() * 0.6 + kPad * 0.75 + plain.horizontalAdvance(e.text));
    width += 2 * kPad;
    const qreal height = 2 * kPad + heavy.height() + this->entries.size() * (plain.height() + kGap);
    qreal left = this->x + 12;
    if (left + width > this->plot.right()) left = this->x - 12 - width;
    left = std::max(left, this->plot.left());
    qreal top = mouse_y - height / 2;
    top = std::min(top, this->plot.bottom() - height);
    top = std::max(top, this->plot.top());
    this->tip = QRectF(left, top, width, height);
  }

  QRectF plot;
  qreal x = 0;
  QString heading;
  std::vector<Entry> entries;
  std::vector<Dot> dots;
  QFont font, bold;
  QRectF tip;
};

bool HasAxes(QAbstractSeries* series) {
  return series->isVisible() && !series->attachedAxes().isEmpty();
}

// A line's or spline's value at `x`, between the samples around it (none
// outside its samples); a scatter series' nearest sample. `at` receives the
// point to mark.
bool ValueAt(const QXYSeries* series, qreal x, QPointF& at) {
  const QVector<QPointF> points = series->pointsVector();
  if (points.isEmpty()) return false;
  if (series->type() == QAbstractSeries::SeriesTypeScatter) {
    at = points.front();
    for (const QPointF& p : points) {
      if (std::fabs(p.x() - x) < std::fabs(at.x() - x)) at = p;
    }
    return true;
  }
  for (int i = 0; i + 1 < points.size(); ++i) {
    const QPointF a = points[i], b = points[i + 1];
    if (x < std::min(a.x(), b.x()) || x > std::max(a.x(), b.x())) continue;
    const qreal t = a.x() == b.x() ? 0 : (x - a.x()) / (b.x() - a.x());
    at = QPointF(x, a.y() + t * (b.y() - a.y()));
    return true;
  }
  if (points.size() == 1 && points.front().x() == x) {
    at = points.front();
    return true;
  }
  return false;
}

bool IsVerticalBars(const QAbstractSeries* series) {
  switch (series->type()) {
    case QAbstractSeries::SeriesTypeBar:
    case QAbstractSeries::SeriesTypeStackedBar:
    case QAbstractSeries::SeriesTypePercentBar:
      return true;
    default:
      return false;
  }
}

}  // namespace

ChartViewEx::ChartViewEx(QWidget* parent) : QChartView(parent) {
  init();
}

ChartViewEx::ChartViewEx(QChart* chart, QWidget* parent) : QChartView(chart, parent) {
  init();
}

ChartViewEx::~ChartViewEx() = default;

void ChartViewEx::init() {
  // The marker follows the mouse without a button held.
  setMouseTracking(true);
  viewport()->setMouseTracking(true);
  setRenderHint(QPainter::Antialiasing);
  chart()->legend()->setAlignment(Qt::AlignBottom);
}

bool ChartViewEx::isMarkerVisible() const {
  return this->marker && this->marker->isVisible();
}

QLineF ChartViewEx::markerLine() const {
  if (!isMarkerVisible()) return QLineF();
  const QLineF line = static_cast<ChartMarker*>(this->marker.data())->Line();
  const QPointF p1 = mapFromScene(this->marker->mapToScene(line.p1()));
  const QPointF p2 = mapFromScene(this->marker->mapToScene(line.p2()));
  return QLineF(p1, p2);
}

QString ChartViewEx::markerText() const {
  if (!isMarkerVisible()) return QString();
  return static_cast<ChartMarker*>(this->marker.data())->Text();
}

void ChartViewEx::mouseMoveEvent(QMouseEvent* event) {
  QChartView::mouseMoveEvent(event);
  showMarkerAt(event->pos());
}

void ChartViewEx::leaveEvent(QEvent* event) {
  hideMarker();
  QChartView::leaveEvent(event);
}

void ChartViewEx::resizeEvent(QResizeEvent* event) {
  // The plot area moves; a stale marker would point at the wrong values.
  hideMarker();
  QChartView::resizeEvent(event);
}

bool ChartViewEx::viewportEvent(QEvent* event) {
  // The mouse leaves through the viewport, which fills the view.
  if (event->type() == QEvent::Leave) hideMarker();
  return QChartView::viewportEvent(event);
}

void ChartViewEx::showMarkerAt(const QPoint& pos) {
  QChart* c = chart();
  if (!c) return;
  const QPointF at = c->mapFromScene(mapToScene(pos));
  if (!c->plotArea().contains(at)) {
    hideMarker();
    return;
  }

  QString heading;
  std::vector<ChartMarker::Entry> entries;
  std::vector<ChartMarker::Dot> dots;
  for (QAbstractSeries* series : c->series()) {
    auto* xy = qobject_cast<QXYSeries*>(series);
    if (!xy || !HasAxes(xy)) continue;
    const qreal x = c->mapToValue(at, xy).x();
    if (heading.isEmpty()) heading = QStringLiteral("x = ") + Number(x);
    QPointF sample;
    if (!ValueAt(xy, x, sample)) continue;
    entries.push_back({xy->color(), xy->name() + QStringLiteral(": ") + Number(sample.y())});
    dots.push_back({c->mapToPosition(sample, xy), xy->color()});
  }
  for (QAbstractSeries* series : c->series()) {
    if (!IsVerticalBars(series) || !HasAxes(series)) continue;
    auto* bars = static_cast<QAbstractBarSeries*>(series);
    const int index = qRound(c->mapToValue(at, bars).x());
    QString category = QString::number(index);
    for (QAbstractAxis* axis : bars->attachedAxes()) {
      if (auto* keys = qobject_cast<QBarCategoryAxis*>(axis))
        category = keys->categories().value(index);
    }
    if (heading.isEmpty()) heading = category;
    for (QBarSet* set : bars->barSets()) {
      if (index < 0 || index >= set->count()) continue;
      entries.push_back(
          {set->color(), set->label() + QStringLiteral(": ") + Number(set->at(index))});
    }
  }
  if (entries.empty()) {
    hideMarker();
    return;
  }

  if (!this->marker || this->marker->parentItem() != c) {
    delete this->marker.data();
    this->marker = new ChartMarker(c);
  }
  static_cast<ChartMarker*>(this->marker.data())
      ->Set(c->plotArea(), at.x(), at.y(), heading, entries, dots, font());
  this->marker->show();
}

void ChartViewEx::hideMarker() {
  if (this->marker) this->marker->hide();
}
