#ifndef OVUI_MVVM_CHART_DATA_H_
#define OVUI_MVVM_CHART_DATA_H_

#include <list>
#include <string>
#include <vector>

namespace vm {

// Identifiers for chart series.
class ChartSeries {
 public:
  // "0", "1", "2", ... in creation order, process-wide (user-interface
  // thread only).
  static std::string GenerateID();
};

// A sample of a chart series; the chart binding reads the concrete kinds.
class DataSample {
 public:
  virtual ~DataSample() = default;
};

// A point of an x/y series (line, scatter, spline).
class XYSample : public DataSample {
 public:
  XYSample(double x = 0, double y = 0) : x(x), y(y) {}
  bool operator==(const XYSample& other) const { return x == other.x && y == other.y; }
  bool operator!=(const XYSample& other) const { return !(*this == other); }
  double x;
  double y;
};

// A labelled value of a category series (bar, pie).
class KeyValueSample : public DataSample {
 public:
  KeyValueSample(const std::string& key = std::string(), double value = 0)
      : key(key), value(value) {}
  bool operator==(const KeyValueSample& other) const {
    return key == other.key && value == other.value;
  }
  bool operator!=(const KeyValueSample& other) const { return !(*this == other); }
  std::string key;
  double value;
};

// One series of a chart. Line, spline and scatter series read `points`; bar
// and pie series read `values`, whose keys name the bar categories or the
// pie slices. The chart view keeps one Qt series per `id`, so a series
// whose samples change is redrawn in place rather than rebuilt.
struct ChartSeriesData {
  enum Kind { LINE = 0, SPLINE = 1, SCATTER = 2, BAR = 3, PIE = 4 };

  // True for the kinds drawn from `points`.
  bool IsXY() const { return kind == LINE || kind == SPLINE || kind == SCATTER; }

  std::string id;  // from ChartSeries::GenerateID(); unique per chart
  std::string name;
  Kind kind = LINE;
  std::vector<XYSample> points;
  std::vector<KeyValueSample> values;
};

// What a chart view shows: its title and its series, in drawing order.
//
// A view model owns its ChartData and hands it to the view as a pointer
// property (base::Value(void*)); the view reads it on every update of that
// property and never writes it. Since the pointer itself stays the same, a
// view model announces edits with EmitPropChange on the property.
//
// Series live in a list, so a reference returned by AddSeries or
// FindSeries stays valid until that series is removed.
class ChartData {
 public:
  // Appends a new, empty series with a fresh identifier.
  ChartSeriesData& AddSeries(const std::string& name, ChartSeriesData::Kind kind);
  // The series with identifier `id`, or null.
  ChartSeriesData* FindSeries(const std::string& id);
  const ChartSeriesData* FindSeries(const std::string& id) const;
  // False when no series has that identifier.
  bool RemoveSeries(const std::string& id);
  void Clear() { this->series.clear(); }

  const std::list<ChartSeriesData>& GetSeries() const { return this->series; }

  std::string title;

 private:
  std::list<ChartSeriesData> series;
};

}  // namespace vm

#endif  // OVUI_MVVM_CHART_DATA_H_
