#include "qt/chart_binding.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLabel>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QtCharts/QBarCategoryAxis>
#include <QtCharts/QBarSeries>
#include <QtCharts/QBarSet>
#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QLineSeries>
#include <QtCharts/QPieSeries>
#include <QtCharts/QPieSlice>
#include <QtCharts/QValueAxis>
#include <functional>
#include <memory>

#include "qt/binding_context.h"
#include "qt/chart_view_ex.h"
#include "support/log_capture.h"

QT_CHARTS_USE_NAMESPACE

using base::Value;
using vm::ChartSeriesData;

namespace {

// Owns its chart data and shows it through the read-only pointer "chart".
struct Dashboard : vm::ViewModel {
  Dashboard() {
    InstallProp("chart", &Dashboard::GetChart, nullptr);
    InstallProp("name", &name);
  }
  bool GetChart(Value& v) const {
    v.Pointer(const_cast<vm::ChartData*>(&data));
    return true;
  }
  // The pointer stays the same, so an edit is announced explicitly.
  void Announce() {
    const Value same(static_cast<void*>(&data));
    EmitPropChange("chart", same, same);
  }
  vm::ChartData data;
  std::string name = "sales";
};

QString Output(const char* file) {
  return QCoreApplication::applicationDirPath() + "/" + file;
}

QVector<QPointF> Points(QObject* series) {
  auto* xy = qobject_cast<QXYSeries*>(series);
  return xy ? xy->pointsVector() : QVector<QPointF>();
}

QValueAxis* ValueAxis(QChart* chart, Qt::Orientation orientation) {
  for (QAbstractAxis* axis : chart->axes(orientation)) {
    if (auto* value = qobject_cast<QValueAxis*>(axis)) return value;
  }
  return nullptr;
}

template <typename View>
struct ChartFixture : testing::Test {
  ChartFixture() {
    new QVBoxLayout(window.get());
    view = new View(window.get());
    view->setProperty("binding.value", "{Binding Path=chart}");
    window->layout()->addWidget(view);
    window->resize(640, 420);
  }
  ~ChartFixture() override {
    window.reset();
    board->Release();
  }
  bool Bind() { return vm::BindingContext::CreateAndBind(window.get(), board) != nullptr; }
  // Announces the edit and waits for the deferred view update to show it.
  bool Publish(const std::function<bool()>& shown) {
    board->Announce();
    return QTest::qWaitFor(shown, 1000);
  }
  QChart* Chart() const { return view->chart(); }
  QObject* Shown(const ChartSeriesData& s) const { return vm::FindChartSeries(Chart(), s.id); }

  std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
  Dashboard* board = new Dashboard();
  View* view;
};

using ChartBindingTest = ChartFixture<QChartView>;
using ChartViewExTest = ChartFixture<ChartViewEx>;

}  // namespace

TEST_F(ChartBindingTest, XYSeriesAreUpdatedInPlaceByIdentifier) {
  ASSERT_EQ(std::string(view->metaObject()->className()), "QtCharts::QChartView");
  ChartSeriesData& line = board->data.AddSeries("Revenue", ChartSeriesData::LINE);
  line.points = {{0, 1}, {1, 3}, {2, 2}};
  ChartSeriesData& dots = board->data.AddSeries("Samples", ChartSeriesData::SCATTER);
  dots.points = {{0.5, 2.5}, {1.5, 4}};
  board->data.title = "Quarter";
  auto* label = new QLabel(window.get());  // shows when an update has run
  label->setProperty("binding.value", "{Binding Path=name}");
  ASSERT_TRUE(Bind());

  ASSERT_EQ(Chart()->series().size(), 2);
  QObject* shown_line = Shown(line);
  ASSERT_NE(shown_line, nullptr);
  EXPECT_EQ(static_cast<QAbstractSeries*>(shown_line)->type(), QAbstractSeries::SeriesTypeLine);
  EXPECT_EQ(static_cast<QAbstractSeries*>(Shown(dots))->type(), QAbstractSeries::SeriesTypeScatter);
  EXPECT_EQ(Points(shown_line), (QVector<QPointF>{{0, 1}, {1, 3}, {2, 2}}));
  EXPECT_EQ(Chart()->title(), "Quarter");
  QValueAxis* x = ValueAxis(Chart(), Qt::Horizontal);
  QValueAxis* y = ValueAxis(Chart(), Qt::Vertical);
  ASSERT_TRUE(x && y);
  EXPECT_LT(x->min(), 0);  // a small margin around the data
  EXPECT_GT(x->min(), -0.5);
  EXPECT_GT(x->max(), 2);
  EXPECT_LT(x->max(), 2.5);
  EXPECT_LT(y->min(), 1);
  EXPECT_GT(y->max(), 4);

  line.points = {{0, 5}, {1, 6}, {2, 4}, {3, 9}};
  board->data.RemoveSeries(dots.id);
  ChartSeriesData& curve = board->data.AddSeries("Trend", ChartSeriesData::SPLINE);
  curve.points = {{0, 4}, {3, 8}};
  ASSERT_TRUE(Publish([&] { return Chart()->series().size() == 2 && Shown(curve); }));
  EXPECT_EQ(Shown(line), shown_line);  // the same series, new points
  EXPECT_EQ(Points(shown_line).size(), 4);
  EXPECT_EQ(Points(shown_line).back(), QPointF(3, 9));
  EXPECT_EQ(static_cast<QAbstractSeries*>(Shown(curve))->type(), QAbstractSeries::SeriesTypeSpline);
  EXPECT_EQ(static_cast<QAbstractSeries*>(Shown(curve))->attachedAxes().size(), 2);
  EXPECT_GT(x->max(), 3);
  EXPECT_GT(y->max(), 9);
  EXPECT_GT(y->min(), 3);

  // Another property changing reaches the chart too, but redraws nothing.
  QSignalSpy replaced(shown_line, SIGNAL(pointsReplaced()));
  board->SetPropW("name", Value("other"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return label->text() == "other"; }, 1000));
  EXPECT_EQ(replaced.count(), 0);

  line.kind = ChartSeriesData::SCATTER;  // a new kind needs a new series
  ASSERT_TRUE(Publish([&] { return Shown(line) != shown_line; }));
  EXPECT_EQ(static_cast<QAbstractSeries*>(Shown(line))->type(), QAbstractSeries::SeriesTypeScatter);
}

TEST_F(ChartBindingTest, BarsShareKeysAndPiesStandApart) {
  ChartSeriesData& last = board->data.AddSeries("2023", ChartSeriesData::BAR);
  last.values = {{"North", 4}, {"South", 6}};
  ChartSeriesData& now = board->data.AddSeries("2024", ChartSeriesData::BAR);
  now.values = {{"South", 7}, {"East", 3}};
  ASSERT_TRUE(Bind());
  window->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  EXPECT_TRUE(view->grab().save(Output("chart_bars.png")));

  ASSERT_EQ(Chart()->series().size(), 1);  // one bar series, one set per series
  auto* set = qobject_cast<QBarSet*>(Shown(now));
  ASSERT_NE(set, nullptr);
  auto* keys = qobject_cast<QBarCategoryAxis*>(Chart()->axes(Qt::Horizontal).value(0));
  ASSERT_NE(keys, nullptr);
  EXPECT_EQ(keys->categories(), (QStringList{"North", "South", "East"}));
  EXPECT_EQ(set->at(0), 0);  // no "North" this year
  EXPECT_EQ(set->at(2), 3);
  EXPECT_EQ(ValueAxis(Chart(), Qt::Vertical)->min(), 0);  // bars stand on zero
  EXPECT_GT(ValueAxis(Chart(), Qt::Vertical)->max(), 7);

  now.values[1].value = 9;
  board->data.RemoveSeries(last.id);
  ChartSeriesData& share = board->data.AddSeries("Share", ChartSeriesData::PIE);
  share.values = {{"A", 1}, {"B", 3}};
  ChartSeriesData& other = board->data.AddSeries("Other", ChartSeriesData::PIE);
  other.values = {{"C", 2}};
  ASSERT_TRUE(Publish([&] { return Shown(other) != nullptr; }));
  EXPECT_EQ(Shown(now), set);
  EXPECT_EQ(set->at(1), 9);
  EXPECT_EQ(keys->categories(), (QStringList{"South", "East"}));
  auto* pie = qobject_cast<QPieSeries*>(Shown(share));
  ASSERT_NE(pie, nullptr);
  ASSERT_EQ(pie->count(), 2);
  QPieSlice* slice = pie->slices().at(1);
  EXPECT_EQ(slice->label(), "B");
  EXPECT_LT(pie->horizontalPosition(),
            static_cast<QPieSeries*>(Shown(other))->horizontalPosition());

  board->data.RemoveSeries(now.id);
  share.values[1].value = 5;
  ASSERT_TRUE(Publish([&] { return Chart()->series().size() == 2; }));
  EXPECT_EQ(pie->slices().at(1), slice);
  EXPECT_EQ(slice->value(), 5);
  EXPECT_TRUE(Chart()->axes().isEmpty());  // pies alone have none
  EXPECT_TRUE(view->grab().save(Output("chart_pies.png")));
}

TEST_F(ChartBindingTest, OnlyPointersAreShownAndNothingIsReadBack) {
  board->data.AddSeries("Line", ChartSeriesData::LINE).points = {{0, 1}};
  auto* unbound = new QChartView(window.get());
  auto* wrong = new QChartView(window.get());
  wrong->setProperty("binding.value", "{Binding Path=name}");
  ovui_test::LogCapture log;
  ASSERT_TRUE(Bind());
  EXPECT_EQ(Chart()->series().size(), 1);
  EXPECT_TRUE(unbound->chart()->series().isEmpty());
  EXPECT_TRUE(wrong->chart()->series().isEmpty());
  EXPECT_TRUE(log.HasFailedCheck("SetWidgetProp",
                                 "value.IsNull() || value.Type() == base::Value::TYPE_POINTER"));

  vm::DataBindingItemChart item(view, board, nullptr, "value", false);
  Value read;
  EXPECT_FALSE(item.GetWidgetProp(read));
  EXPECT_TRUE(item.SetWidgetProp(Value()));  // null: an empty chart
  EXPECT_TRUE(Chart()->series().isEmpty());
  EXPECT_TRUE(Chart()->axes().isEmpty());
}

TEST_F(ChartBindingTest, TheViewAndTheViewModelMayGoInEitherOrder) {
  board->data.AddSeries("Line", ChartSeriesData::LINE).points = {{0, 1}, {1, 2}};
  ASSERT_TRUE(Bind());
  delete view;  // a bound view goes first; the next update must skip it
  board->Announce();
  QTest::qWait(60);

  auto* second = new QWidget();
  auto* chart = new ChartViewEx(second);
  chart->setProperty("binding.value", "{Binding Path=chart}");
  auto* later = new Dashboard();
  later->data.AddSeries("Line", ChartSeriesData::LINE).points = {{0, 1}};
  ASSERT_NE(vm::BindingContext::CreateAndBind(second, later), nullptr);
  later->Release();  // the context keeps it, and its data, alive
  EXPECT_EQ(chart->chart()->series().size(), 1);
  delete second;
}

TEST_F(ChartViewExTest, TheMarkerReadsEachSeriesUnderTheMouse) {
  ASSERT_EQ(std::string(view->metaObject()->className()), "ChartViewEx");
  ChartSeriesData& up = board->data.AddSeries("Up", ChartSeriesData::LINE);
  up.points = {{0, 0}, {4, 4}, {10, 10}};
  ChartSeriesData& down = board->data.AddSeries("Down", ChartSeriesData::SPLINE);
  down.points = {{0, 10}, {10, 0}};
  ChartSeriesData& hits = board->data.AddSeries("Hits", ChartSeriesData::SCATTER);
  hits.points = {{2, 3}, {8, 6}};
  board->data.title = "Readings";
  ASSERT_TRUE(Bind());
  window->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));

  auto* series = static_cast<QAbstractSeries*>(Shown(up));
  auto pixel = [&](double x, double y) {
    const QPointF in_chart = Chart()->mapToPosition(QPointF(x, y), series);
    return view->mapFromScene(Chart()->mapToScene(in_chart));
  };
  const QPoint at = pixel(2.5, 5);
  QTest::mouseMove(view->viewport(), at);
  ASSERT_TRUE(QTest::qWaitFor([&] { return view->isMarkerVisible(); }, 1000));
  EXPECT_NEAR(view->markerLine().x1(), at.x(), 1.0);
  EXPECT_NEAR(view->markerLine().x2(), at.x(), 1.0);
  EXPECT_LT(view->markerLine().y1(), pixel(2.5, 9).y());  // spans the plot area
  EXPECT_GT(view->markerLine().y2(), pixel(2.5, 1).y());
  const QString text = view->markerText();
  EXPECT_TRUE(text.startsWith("x = 2.")) << text.toStdString();
  // Pixels round the x a little; the values show three digits or more.
  EXPECT_TRUE(text.contains("Up: 2.5") || text.contains("Up: 2.4")) << text.toStdString();
  EXPECT_TRUE(text.contains("Down: 7.5") || text.contains("Down: 7.4")) << text.toStdString();
  EXPECT_TRUE(text.contains("Hits: 3\n") || text.endsWith("Hits: 3")) << text.toStdString();
  EXPECT_TRUE(view->grab().save(Output("chart_view_ex_marker.png")));

  // The marker follows the data too, once the mouse moves.
  up.points = {{0, 1}, {10, 1}};
  ASSERT_TRUE(Publish([&] { return Points(series).size() == 2; }));
  QTest::mouseMove(view->viewport(), pixel(7, 5));
  ASSERT_TRUE(QTest::qWaitFor([&] { return view->markerText().contains("Up: 1"); }, 1000));

  QTest::mouseMove(view->viewport(), QPoint(2, 2));  // outside the plot area
  EXPECT_TRUE(QTest::qWaitFor([&] { return !view->isMarkerVisible(); }, 1000));
  EXPECT_TRUE(view->markerText().isEmpty());
  QTest::mouseMove(view->viewport(), pixel(5, 5));
  ASSERT_TRUE(QTest::qWaitFor([&] { return view->isMarkerVisible(); }, 1000));
  QEvent leave(QEvent::Leave);
  QCoreApplication::sendEvent(view->viewport(), &leave);
  EXPECT_FALSE(view->isMarkerVisible());
}

TEST_F(ChartViewExTest, OverBarsTheMarkerNamesTheCategory) {
  board->data.AddSeries("2023", ChartSeriesData::BAR).values = {{"North", 4}, {"South", 6}};
  board->data.AddSeries("2024", ChartSeriesData::BAR).values = {{"North", 5}, {"South", 2}};
  ASSERT_TRUE(Bind());
  window->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  auto* bars = Chart()->series().at(0);
  const QPointF south = Chart()->mapToPosition(QPointF(1, 1), bars);
  QTest::mouseMove(view->viewport(), view->mapFromScene(Chart()->mapToScene(south)));
  ASSERT_TRUE(QTest::qWaitFor([&] { return view->isMarkerVisible(); }, 1000));
  EXPECT_EQ(view->markerText(), "South\n2023: 6\n2024: 2");
  EXPECT_TRUE(view->grab().save(Output("chart_view_ex_bars.png")));
}
