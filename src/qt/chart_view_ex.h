#ifndef OVUI_QT_CHART_VIEW_EX_H_
#define OVUI_QT_CHART_VIEW_EX_H_

#include <QLineF>
#include <QPointer>
#include <QString>
#include <QtCharts/QChartView>

class QGraphicsObject;

// A chart view that reads out values under the mouse: over the plot area a
// vertical marker line follows the mouse, a dot sits on each series where
// the line crosses it, and a tip lists each series' value there (line and
// spline series interpolated between their samples, scatter series at their
// nearest sample, bar series at the category under the mouse). Pie series
// have no x and take no part. The marker hides when the mouse leaves the
// plot area.
//
// Bound like a plain QChartView under the class name "ChartViewEx".
class ChartViewEx : public QtCharts::QChartView {
  Q_OBJECT

 public:
  explicit ChartViewEx(QWidget* parent = nullptr);
  explicit ChartViewEx(QtCharts::QChart* chart, QWidget* parent = nullptr);
  ~ChartViewEx() override;

  bool isMarkerVisible() const;
  // The marker line in viewport coordinates; null when hidden.
  QLineF markerLine() const;
  // The tip's text: a heading (the x value or the bar category), then one
  // "name: value" line per series; empty when hidden.
  QString markerText() const;

 protected:
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  void init();
  void showMarkerAt(const QPoint& pos);
  void hideMarker();

  // Lives in the chart, which owns it; the pointer clears when a chart
  // handed to setChart() is deleted.
  QPointer<QGraphicsObject> marker;
};

#endif  // OVUI_QT_CHART_VIEW_EX_H_
