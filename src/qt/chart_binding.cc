#include "qt/chart_binding.h"

#include <QtCharts/QBarCategoryAxis>
#include <QtCharts/QBarSeries>
#include <QtCharts/QBarSet>
#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QLineSeries>
#include <QtCharts/QPieSeries>
#include <QtCharts/QPieSlice>
#include <QtCharts/QScatterSeries>
#include <QtCharts/QSplineSeries>
#include <QtCharts/QValueAxis>
#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <vector>

#include "base/log.h"

QT_CHARTS_USE_NAMESPACE

namespace vm {

namespace {

// Dynamic properties that mark what this file made, so that an update finds
// its own series and axes again and leaves the host's alone.
const char kSeriesId[] = "series_id";
const char kSeriesKind[] = "series_kind";
const char kBarGroup[] = "bar_group";
const char kAxisRole[] = "chart_axis";

// Fraction of the data span added at each end of a value axis.
const double kMargin = 0.05;

QString Text(const std::string& text) {
  return QString::fromUtf8(text.c_str());
}

bool IsOurs(const QObject* obj) {
  return obj->property(kSeriesId).isValid();
}

void Mark(QObject* obj, const ChartSeriesData& data) {
  obj->setProperty(kSeriesId, Text(data.id));
  obj->setProperty(kSeriesKind, static_cast<int>(data.kind));
}

QBarSeries* FindBarGroup(QChart* chart) {
  for (QAbstractSeries* series : chart->series()) {
    if (series->property(kBarGroup).toBool()) return qobject_cast<QBarSeries*>(series);
  }
  return nullptr;
}

template <typename Axis>
Axis* FindAxis(QChart* chart, const char* role) {
  for (QAbstractAxis* axis : chart->axes()) {
    if (axis->property(kAxisRole).toString() == QLatin1String(role)) {
      return qobject_cast<Axis*>(axis);
    }
  }
  return nullptr;
}

template <typename Axis>
Axis* EnsureAxis(QChart* chart, const char* role, Qt::Alignment alignment) {
  if (Axis* axis = FindAxis<Axis>(chart, role)) return axis;
  auto* axis = new Axis();
  axis->setProperty(kAxisRole, role);
  chart->addAxis(axis, alignment);
  return axis;
}

void DropAxis(QChart* chart, const char* role) {
  if (QAbstractAxis* axis = FindAxis<QAbstractAxis>(chart, role)) {
    chart->removeAxis(axis);
    delete axis;
  }
}

void Attach(QAbstractSeries* series, QAbstractAxis* axis) {
  if (!series->attachedAxes().contains(axis)) series->attachAxis(axis);
}

// Lowest and highest finite value seen; empty until the first one.
struct Span {
  void Add(double v) {
    if (!std::isfinite(v)) return;
    lo = empty ? v : std::min(lo, v);
    hi = empty ? v : std::max(hi, v);
    empty = false;
  }
  double lo = 0;
  double hi = 0;
  bool empty = true;
};

// A round tick interval (1, 2, 2.5 or 5 times a power of ten) giving about
// six intervals over `span`.
double NiceStep(double span) {
  const double raw = span / 6;
  const double magnitude = std::pow(10.0, std::floor(std::log10(raw)));
  const double norm = raw / magnitude;
  const double factor = norm <= 1 ? 1 : norm <= 2 ? 2 : norm <= 2.5 ? 2.5 : norm <= 5 ? 5 : 10;
  return factor * magnitude;
}

// The span widened by the margin, except at a bound that is a bar's base line
// (bars start at zero and a gap below them looks like a missing value).
// Ticks fall on round numbers inside that range, whatever its ends.
void SetRange(QValueAxis* axis, Span span, bool keep_zero) {
  if (span.empty) {
    span.lo = 0;
    span.hi = 1;
  }
  double pad = (span.hi - span.lo) * kMargin;
  if (pad == 0) pad = span.hi != 0 ? std::fabs(span.hi) * kMargin * 2 : 1;
  const double lo = keep_zero && span.lo == 0 ? 0 : span.lo - pad;
  const double hi = keep_zero && span.hi == 0 ? 0 : span.hi + pad;
  if (axis->min() != lo || axis->max() != hi) axis->setRange(lo, hi);
  const double step = NiceStep(hi - lo);
  if (axis->tickType() != QValueAxis::TicksDynamic) {
    axis->setTickType(QValueAxis::TicksDynamic);
    axis->setTickAnchor(0);
    axis->setLabelFormat(QStringLiteral("%g"));
  }
  if (axis->tickInterval() != step) axis->setTickInterval(step);
}

QXYSeries* MakeXY(ChartSeriesData::Kind kind) {
  switch (kind) {
    case ChartSeriesData::SPLINE:
      return new QSplineSeries();
    case ChartSeriesData::SCATTER: {
      auto* scatter = new QScatterSeries();
      scatter->setMarkerSize(9);
      return scatter;
    }
    default:
      return new QLineSeries();
  }
}

void UpdateXY(QXYSeries* series, const ChartSeriesData& data) {
  QVector<QPointF> points;
  points.reserve(static_cast<int>(data.points.size()));
  for (const XYSample& p : data.points)
    points.append(QPointF(p.x, p.y));
  if (series->pointsVector() != points) series->replace(points);
}

void UpdateBarSet(QBarSet* set, const ChartSeriesData& data, const QStringList& keys) {
  QList<qreal> values;
  values.reserve(keys.size());
  for (const QString& key : keys) {
    // A key the series lacks stands at zero; a repeated key counts once.
    const std::string wanted = key.toUtf8().toStdString();
    auto it = std::find_if(data.values.begin(), data.values.end(),
                           [&wanted](const KeyValueSample& s) { return s.key == wanted; });
    values.append(it == data.values.end() ? 0.0 : it->value);
  }
  if (set->count() != values.size()) {
    if (set->count() > 0) set->remove(0, set->count());
    set->append(values);
    return;
  }
  for (int i = 0; i < values.size(); ++i) {
    if (set->at(i) != values[i]) set->replace(i, values[i]);
  }
}

void UpdatePie(QPieSeries* pie, const ChartSeriesData& data) {
  const QList<QPieSlice*> slices = pie->slices();
  if (slices.size() != static_cast<int>(data.values.size())) {
    pie->clear();
    for (const KeyValueSample& sample : data.values) {
      QPieSlice* slice = pie->append(Text(sample.key), sample.value);
      slice->setLabelVisible(true);
    }
    return;
  }
  for (int i = 0; i < slices.size(); ++i) {
    const KeyValueSample& sample = data.values[static_cast<size_t>(i)];
    if (slices[i]->label() != Text(sample.key)) slices[i]->setLabel(Text(sample.key));
    if (slices[i]->value() != sample.value) slices[i]->setValue(sample.value);
  }
}

// Removes every series (or bar set) of ours whose id has left the data or
// whose kind changed; returns the survivors by id.
std::map<QString, QObject*> Prune(QChart* chart, const ChartData& data) {
  std::map<QString, QObject*> kept;
  auto wanted = [&data](const QObject* obj) {
    const ChartSeriesData* s = data.FindSeries(obj->property(kSeriesId).toString().toStdString());
    return s && obj->property(kSeriesKind).toInt() == static_cast<int>(s->kind);
  };
  for (QAbstractSeries* series : chart->series()) {
    if (!IsOurs(series)) continue;
    if (wanted(series)) {
      kept[series->property(kSeriesId).toString()] = series;
    } else {
      chart->removeSeries(series);
      delete series;
    }
  }
  if (QBarSeries* group = FindBarGroup(chart)) {
    for (QBarSet* set : group->barSets()) {
      if (wanted(set)) {
        kept[set->property(kSeriesId).toString()] = set;
      } else {
        group->remove(set);  // deletes the set
      }
    }
  }
  return kept;
}

}  // namespace

bool UpdateChart(QChart* chart, const ChartData& data) {
  OVUI_CHECK(chart != NULL, false);
  if (chart->title() != Text(data.title)) chart->setTitle(Text(data.title));

  std::map<QString, QObject*> shown = Prune(chart, data);

  // The category axis lists every bar key once, in order of appearance.
  QStringList keys;
  std::set<std::string> seen;
  Span xs, ys;
  bool has_xy = false, has_bars = false;
  int pies = 0;
  for (const ChartSeriesData& s : data.GetSeries()) {
    if (s.IsXY()) {
      has_xy = true;
      for (const XYSample& p : s.points) {
        xs.Add(p.x);
        ys.Add(p.y);
      }
    } else if (s.kind == ChartSeriesData::BAR) {
      has_bars = true;
      ys.Add(0);
      for (const KeyValueSample& v : s.values) {
        ys.Add(v.value);
        if (seen.insert(v.key).second) keys.append(Text(v.key));
      }
    } else {
      ++pies;
    }
  }

  QValueAxis* x_axis = nullptr;
  QValueAxis* y_axis = nullptr;
  QBarCategoryAxis* key_axis = nullptr;
  if (has_xy) x_axis = EnsureAxis<QValueAxis>(chart, "x", Qt::AlignBottom);
  if (has_bars) key_axis = EnsureAxis<QBarCategoryAxis>(chart, "keys", Qt::AlignBottom);
  if (has_xy || has_bars) y_axis = EnsureAxis<QValueAxis>(chart, "y", Qt::AlignLeft);
  if (x_axis) SetRange(x_axis, xs, false);
  if (y_axis) SetRange(y_axis, ys, has_bars);
  if (key_axis && key_axis->categories() != keys) key_axis->setCategories(keys);

  QBarSeries* group = FindBarGroup(chart);
  if (has_bars && !group) {
    group = new QBarSeries();
    group->setProperty(kBarGroup, true);
    chart->addSeries(group);
  }

  int pie_index = 0;
  for (const ChartSeriesData& s : data.GetSeries()) {
    auto it = shown.find(Text(s.id));
    QObject* obj = it == shown.end() ? nullptr : it->second;
    if (s.IsXY()) {
      auto* series = static_cast<QXYSeries*>(obj);
      if (!series) {
        series = MakeXY(s.kind);
        Mark(series, s);
        UpdateXY(series, s);
        chart->addSeries(series);
      } else {
        UpdateXY(series, s);
      }
      if (series->name() != Text(s.name)) series->setName(Text(s.name));
      Attach(series, x_axis);
      Attach(series, y_axis);
    } else if (s.kind == ChartSeriesData::BAR) {
      auto* set = static_cast<QBarSet*>(obj);
      if (!set) {
        set = new QBarSet(Text(s.name));
        Mark(set, s);
        UpdateBarSet(set, s, keys);
        group->append(set);
      } else {
        UpdateBarSet(set, s, keys);
      }
      if (set->label() != Text(s.name)) set->setLabel(Text(s.name));
    } else {
      auto* pie = static_cast<QPieSeries*>(obj);
      if (!pie) {
        pie = new QPieSeries();
        Mark(pie, s);
        UpdatePie(pie, s);
        chart->addSeries(pie);
      } else {
        UpdatePie(pie, s);
      }
      if (pie->name() != Text(s.name)) pie->setName(Text(s.name));
      // Several pies stand side by side, each in its own column.
      const double column = 1.0 / pies;
      pie->setHorizontalPosition(column * (pie_index + 0.5));
      pie->setPieSize(std::min(0.75, column * 0.9));
      ++pie_index;
    }
  }

  if (group) {
    if (has_bars) {
      Attach(group, key_axis);
      Attach(group, y_axis);
    } else {
      chart->removeSeries(group);
      delete group;
    }
  }
  if (!has_xy) DropAxis(chart, "x");
  if (!has_bars) DropAxis(chart, "keys");
  if (!has_xy && !has_bars) DropAxis(chart, "y");
  return true;
}

QObject* FindChartSeries(QChart* chart, const std::string& id) {
  OVUI_CHECK(chart != NULL, nullptr);
  const QString wanted = Text(id);
  for (QAbstractSeries* series : chart->series()) {
    if (series->property(kSeriesId).toString() == wanted) return series;
  }
  if (QBarSeries* group = FindBarGroup(chart)) {
    for (QBarSet* set : group->barSets()) {
      if (set->property(kSeriesId).toString() == wanted) return set;
    }
  }
  return nullptr;
}

bool DataBindingItemChart::GetWidgetProp(base::Value&) const {
  return false;
}

bool DataBindingItemChart::SetWidgetProp(const base::Value& value) {
  auto* view = qobject_cast<QChartView*>(this->obj);
  OVUI_CHECK(view != NULL, false);
  OVUI_CHECK(value.IsNull() || value.Type() == base::Value::TYPE_POINTER, false);
  static const ChartData empty;
  const auto* data = static_cast<const ChartData*>(value.Pointer());
  return UpdateChart(view->chart(), data ? *data : empty);
}

}  // namespace vm
