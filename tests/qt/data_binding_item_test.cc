#include "qt/data_binding_item.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <climits>

#include "qt/pop_menu.h"
#include "support/log_capture.h"

using base::Value;

TEST(DataBindingItemTest, ValuesRoundTripThroughWidgetsAndOnlyChangesAreWritten) {
  // Local time: a date reads back as its midnight; UTC noon is the epoch's day anywhere.
  const long long afternoon = 400 * 86400LL + 15 * 3600 + 7, noon = 12 * 3600 + 61;
  const QDate day = QDateTime::fromSecsSinceEpoch(afternoon).date();
  QLineEdit line;
  QDoubleSpinBox dspin;
  QDateEdit date;
  QTimeEdit time;
  const std::tuple<QObject*, const char*, Value, Value> cases[] = {
      {&line, "text", u8"Gr\u00FC\u00DFe", u8"Gr\u00FC\u00DFe"},
      {&line, "maxLength", (1LL << 32) + 42, 42},  // ints are 32 bits wide
      {&line, "readOnly", true, true},
      {&dspin, "value", 0.1, static_cast<double>(0.1f)},  // read through a float
      {&date, "date", afternoon, day.startOfDay().toSecsSinceEpoch()},
      {&time, "time", noon, noon}};
  for (const auto& [widget, prop, written, read] : cases) {
    vm::DataBindingItemQt it(widget, nullptr, nullptr, prop, false);
    Value back;
    EXPECT_TRUE(it.SetWidgetProp(written)) << prop;
    EXPECT_TRUE(it.GetWidgetProp(back)) << prop;
    EXPECT_EQ(back.Cmp(read), 0) << prop;
  }
  EXPECT_EQ(line.text(), QString::fromUtf8(u8"Gr\u00FC\u00DFe"));
  EXPECT_EQ(dspin.value(), 0.1);
  EXPECT_TRUE(date.date() == day);
  EXPECT_TRUE(time.time() == QDateTime::fromSecsSinceEpoch(noon).time());

  // Instants beyond what milliseconds hold have nothing to show: refused, the widget untouched.
  QDateTimeEdit stamp;
  QVariant qv;
  EXPECT_FALSE(vm::QVariantFromValue(qv, Value(LLONG_MAX), "dateTime"));
  EXPECT_FALSE(vm::QVariantFromValue(qv, Value(LLONG_MIN), "date"));
  vm::DataBindingItemQt(&stamp, nullptr, nullptr, "dateTime", false).SetWidgetProp(LLONG_MAX);
  EXPECT_EQ(stamp.dateTime(), QDateTimeEdit().dateTime());

  // Writes only what changes, shows only what was hidden, and keeps the caret.
  QWidget window;
  auto* edit = new QPlainTextEdit(&window);
  vm::DataBindingItemQt text(edit, nullptr, nullptr, "plainText", false);
  vm::DataBindingItemQt visible(edit, nullptr, nullptr, "visible", false);
  QSignalSpy changed(edit, SIGNAL(textChanged()));
  EXPECT_TRUE(text.SetWidgetProp(Value("a")));
  EXPECT_TRUE(text.SetWidgetProp(Value("a")));
  EXPECT_EQ(changed.count(), 1);                    // a second write would reset the caret and undo
  EXPECT_TRUE(visible.SetWidgetProp(Value(true)));  // in a hidden window: no explicit show
  EXPECT_FALSE(edit->testAttribute(Qt::WA_WState_ExplicitShowHide));
  EXPECT_TRUE(visible.SetWidgetProp(Value(false)));
  window.show();
  EXPECT_FALSE(edit->isVisible());
  EXPECT_TRUE(visible.SetWidgetProp(Value(1)));
  EXPECT_TRUE(edit->isVisible());

  window.activateWindow();
  edit->setFocus();
  if (!QTest::qWaitForWindowActive(&window) || !edit->hasFocus()) GTEST_SKIP() << "no focus";
  edit->setPlainText("hello world");  // caret at the start; echoes move it as typing did
  const std::pair<const char*, int> echoes[] = {
      {"hello, world", 1}, {"hello, world", 1}, {"hello", 5}, {"hi", 2}};
  for (const auto& [echo, caret] : echoes) {
    EXPECT_TRUE(text.SetWidgetProp(Value(echo))) << echo;
    EXPECT_EQ(edit->textCursor().position(), caret) << echo;
  }
}

TEST(DataBindingItemComboBoxTest, OptionsRefillSilentlyAndSelectionGoesByDataThenText) {
  QComboBox combo;
  QSignalSpy index_changed(&combo, SIGNAL(currentIndexChanged(int)));
  vm::DataBindingItemComboBox options(&combo, nullptr, nullptr, "options", false);
  EXPECT_TRUE(options.SetWidgetProp(Value("x\n\ny\n")));
  EXPECT_EQ(combo.count(), 3);  // x, blank, y
  EXPECT_TRUE(options.SetWidgetProp(Value("Red\nBlue\nGreen")));
  EXPECT_TRUE(index_changed.isEmpty());

  combo.setItemData(0, "Blue");
  combo.setItemData(2, "g");
  QSignalSpy text_changed(&combo, SIGNAL(currentTextChanged(QString)));
  vm::DataBindingItemComboBox item(&combo, nullptr, nullptr, "currentText", false);
  const std::tuple<const char*, int, const char*> steps[] = {
      {"g", 2, "Green"}, {"Blue", 0, "Red"}, {"Green", 2, "Green"}, {"Purple", 2, "Purple"}};
  for (const auto& [value, index, announced] : steps) {
    EXPECT_TRUE(item.SetWidgetProp(Value(value))) << value;
    EXPECT_EQ(combo.currentIndex(), index) << value;
    ASSERT_EQ(text_changed.count(), 1) << value;
    EXPECT_EQ(text_changed.takeFirst().at(0).toString(), announced);
  }
  ovui_test::LogCapture log;
  EXPECT_FALSE(item.SetWidgetProp(Value()));
  EXPECT_TRUE(log.HasFailedCheck("SetWidgetProp", "QVariantFromValue(qv, value, prop)"));
}

TEST(BindingItemTest, OnlyTheOwnerReleases) {
  // Copies own nothing: a release by a copy shows as a use after free, a missed one as a leak.
  QPointer<PopMenuSupport> menu = new PopMenuSupport;
  {
    vm::DataBindingItemQt item(nullptr, nullptr, new vm::DataBinding, "text", true);
    vm::CommandBindingItemQt command(nullptr, nullptr, new vm::CommandBinding, true);
    command.menu_support = menu;
    {
      const QVariant copies[] = {QVariant::fromValue(item), QVariant::fromValue(command)};
      vm::DataBindingItemQt assigned(nullptr, nullptr, new vm::DataBinding, "text", true);
      assigned = item;  // gives up its own rule, adopts none
    }
    EXPECT_FALSE(menu.isNull());
  }
  EXPECT_TRUE(menu.isNull());
}
