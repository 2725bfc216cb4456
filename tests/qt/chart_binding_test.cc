#include "qt/chart_binding.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QtCharts>
#include <utility>

#include "qt/binding_context.h"
#include "qt/chart_view_ex.h"
#include "support/log_capture.h"

QT_CHARTS_USE_NAMESPACE

using vm::ChartSeriesData;

namespace {

// Owns its chart data and shows it through the read-only pointer "chart".
struct Dashboard : vm::ViewModel {
  Dashboard() {
    InstallProp("chart", &Dashboard::GetChart, nullptr);
    InstallProp("name", &name);
  }
  bool GetChart(base::Value& v) const {
    v = pointer;
    return true;
  }
  // The pointer stays the same, so an edit is announced explicitly.
  void Announce() { EmitPropChange("chart", pointer, pointer); }
  vm::ChartData data;
  const base::Value pointer{static_cast<void*>(&data)};
  std::string name = "sales";
};

struct ChartTest : testing::Test {
  ChartTest() {
    view->setProperty("binding.value", "{Binding Path=chart}");
    view->resize(640, 420);
  }
  ~ChartTest() override {
    delete window;
    base::SafeRelease(board);
  }
  bool Bind() { return vm::BindingContext::CreateAndBind(window, board) != nullptr; }
  bool Publish(const std::function<bool()>& shown) {
    board->Announce();
    return QTest::qWaitFor(shown, 1000);
  }
  QChart* Chart() const { return view->chart(); }
  QObject* Shown(const ChartSeriesData& s) const { return vm::FindChartSeries(Chart(), s.id); }
  QPoint Pixel(double x, double y) const {
    const QPointF in_chart = Chart()->mapToPosition(QPointF(x, y), Chart()->series().at(0));
    return view->mapFromScene(Chart()->mapToScene(in_chart));
  }

  QWidget* window = new QWidget();
  ChartViewEx* view = new ChartViewEx(window);
  Dashboard* board = new Dashboard();
};

}  // namespace

TEST_F(ChartTest, SeriesAreUpdatedInPlaceByIdentifier) {
  ChartSeriesData& last = board->data.AddSeries("2023", ChartSeriesData::BAR);
  last.values = {{"North", 4}, {"South", 6}};
  ChartSeriesData& now = board->data.AddSeries("2024", ChartSeriesData::BAR);
  now.values = {{"South", 7}, {"East", 3}};
  ChartSeriesData& share = board->data.AddSeries("Share", ChartSeriesData::PIE);
  share.values = {{"A", 1}, {"B", 3}};
  (new QChartView(window))->setProperty("binding.value", "{Binding Path=name}");  // not a pointer
  ovui_test::LogCapture log;
  ASSERT_TRUE(Bind());
  EXPECT_TRUE(log.HasFailedCheck("SetWidgetProp",
                                 "value.IsNull() || value.Type() == base::Value::TYPE_POINTER"));
  // Bars share their keys; pies keep their slices.
  ASSERT_EQ(Chart()->series().size(), 2);  // the pie, and one set per bar series in one series
  auto* set = qobject_cast<QBarSet*>(Shown(now));
  auto* keys = qobject_cast<QBarCategoryAxis*>(Chart()->axes(Qt::Horizontal).value(0));
  auto* pie = qobject_cast<QPieSeries*>(Shown(share));
  ASSERT_TRUE(set && keys && pie && pie->count() == 2);
  EXPECT_EQ(keys->categories(), (QStringList{"North", "South", "East"}));
  EXPECT_EQ(set->at(0), 0);  // no "North" this year
  QPieSlice* slice = pie->slices().at(1);
  now.values[1].value = 9;
  share.values[1].value = 5;
  board->data.RemoveSeries(last.id);
  ASSERT_TRUE(Publish([&] { return keys->categories() == QStringList{"South", "East"}; }));
  EXPECT_EQ(Shown(now), set);
  EXPECT_EQ(set->at(1), 9);
  EXPECT_EQ(pie->slices().at(1), slice);
  EXPECT_EQ(slice->value(), 5);

  board->data.Clear();
  ChartSeriesData& line = board->data.AddSeries("Revenue", ChartSeriesData::LINE);
  line.points = {{0, 1}, {1, 3}, {2, 2}};
  ASSERT_TRUE(Publish([&] { return qobject_cast<QLineSeries*>(Shown(line)) != nullptr; }));
  auto* shown_line = static_cast<QXYSeries*>(Shown(line));
  line.points = {{0, 5}, {1, 6}, {2, 4}, {3, 9}};
  ASSERT_TRUE(Publish([&] { return shown_line->pointsVector().back() == QPointF(3, 9); }));
  EXPECT_EQ(Shown(line), shown_line);  // the same series, new points
  // The axes follow the data, both ways.
  EXPECT_TRUE(Chart()->plotArea().contains(Chart()->mapToPosition({3, 9}, shown_line)));
  EXPECT_FALSE(Chart()->plotArea().contains(Chart()->mapToPosition({1, 2}, shown_line)));
  line.kind = ChartSeriesData::SPLINE;  // a new kind needs a new series, on the axes
  ASSERT_TRUE(Publish([&] { return qobject_cast<QSplineSeries*>(Shown(line)) != nullptr; }));
  EXPECT_EQ(static_cast<QAbstractSeries*>(Shown(line))->attachedAxes().size(), 2);

  delete view;  // a bound view goes first; the next update must skip it
  board->Announce();
  QTest::qWait(60);
  std::exchange(board, nullptr)->Release();  // the binding context keeps it till the end
}

TEST_F(ChartTest, TheMarkerReadsEachSeriesUnderTheMouse) {
  board->data.AddSeries("Up", ChartSeriesData::LINE).points = {{0, 0}, {4, 4}, {10, 10}};
  board->data.AddSeries("Down", ChartSeriesData::SPLINE).points = {{0, 10}, {10, 0}};
  board->data.AddSeries("Hits", ChartSeriesData::SCATTER).points = {{2, 3}, {8, 6}};
  ASSERT_TRUE(Bind());
  window->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
  const QPoint at = Pixel(2.5, 5);
  QTest::mouseMove(view->viewport(), at);
  ASSERT_TRUE(QTest::qWaitFor([&] { return view->isMarkerVisible(); }, 1000));
  EXPECT_NEAR(view->markerLine().x1(), at.x(), 1.0);
  // Pixels round the x a little; lines interpolate, scatter takes the nearest sample.
  const QRegularExpression tip("^x = 2\\.\\d+\nUp: 2\\.[45]\\d*\nDown: 7\\.[45]\\d*\nHits: 3$");
  EXPECT_TRUE(tip.match(view->markerText()).hasMatch()) << view->markerText().toStdString();
  QTest::mouseMove(view->viewport(), QPoint(2, 2));  // outside the plot area
  EXPECT_TRUE(QTest::qWaitFor([&] { return !view->isMarkerVisible(); }, 1000));

  board->data.Clear();
  board->data.AddSeries("2023", ChartSeriesData::BAR).values = {{"North", 4}, {"South", 6}};
  board->data.AddSeries("2024", ChartSeriesData::BAR).values = {{"North", 5}, {"South", 2}};
  ASSERT_TRUE(Publish([&] { return Chart()->series().size() == 1; }));
  QTest::mouseMove(view->viewport(), Pixel(1, 1));
  ASSERT_TRUE(QTest::qWaitFor([&] { return view->isMarkerVisible(); }, 1000));
  EXPECT_EQ(view->markerText(), "South\n2023: 6\n2024: 2");
}
