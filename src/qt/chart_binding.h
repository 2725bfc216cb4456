#ifndef OVUI_QT_CHART_BINDING_H_
#define OVUI_QT_CHART_BINDING_H_

#include <string>

#include "base/value.h"
#include "mvvm/chart_data.h"
#include "qt/data_binding_item.h"

class QObject;
namespace QtCharts {
class QChart;
}

namespace vm {

// Shows a vm::ChartData in a QChartView (or a ChartViewEx). The bound view
// model property holds a pointer to the data (base::Value(void*)); a null
// pointer empties the chart. Charts only display: nothing is written back.
class DataBindingItemChart : public DataBindingItemQt {
 public:
  using DataBindingItemQt::DataBindingItemQt;
  // Always false: a chart has no value to give back.
  bool GetWidgetProp(base::Value& value) const override;
  // Brings the view's chart in line with the pointed-to data (UpdateChart).
  bool SetWidgetProp(const base::Value& value) override;
};

// Makes `chart` show `data`, changing only what differs. Each series of the
// data is matched to the Qt series made for its id earlier: samples are
// replaced in place, a new id adds a series, a vanished id (or a changed
// kind) removes one. Series that were not made here are left alone.
//
// Line, spline and scatter series share two value axes whose ranges cover
// their points with a small margin; bar series are bar sets of one shared
// QBarSeries over a category axis of their keys (in order of appearance)
// and the shared vertical axis; pie series have no axes and are laid out
// side by side.
bool UpdateChart(QtCharts::QChart* chart, const ChartData& data);

// The Qt object that shows the series `id` in `chart`: the QAbstractSeries
// of a line, spline, scatter or pie series, the QBarSet of a bar series.
// Null when the chart has none.
QObject* FindChartSeries(QtCharts::QChart* chart, const std::string& id);

}  // namespace vm

#endif  // OVUI_QT_CHART_BINDING_H_
