#ifndef OVUI_MVVM_CHART_DATA_H_
#define OVUI_MVVM_CHART_DATA_H_

#include <string>

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
  double x;
  double y;
};

// A labelled value of a category series (bar, pie).
class KeyValueSample : public DataSample {
 public:
  KeyValueSample(const std::string& key = std::string(), double value = 0)
      : key(key), value(value) {}
  std::string key;
  double value;
};

}  // namespace vm

#endif  // OVUI_MVVM_CHART_DATA_H_
