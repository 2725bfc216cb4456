#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>

#include "qt/data_binding_item.h"
#include "qt/pop_menu.h"
#include "support/log_capture.h"

using base::Value;
using vm::DataBindingItemComboBox;
using vm::DataBindingItemQt;

namespace {

// Counts the writes that reach its property.
class WriteCounter : public QObject {
  Q_OBJECT
  Q_PROPERTY(QString label READ label WRITE setLabel)
 public:
  QString label() const { return text; }
  void setLabel(const QString& value) {
    text = value;
    ++writes;
  }
  QString text;
  int writes = 0;
};

Value Read(QObject* obj, const char* prop) {
  Value value;
  EXPECT_TRUE(DataBindingItemQt(obj, nullptr, nullptr, prop, false).GetWidgetProp(value)) << prop;
  return value;
}

bool Write(QObject* obj, const char* prop, const Value& value) {
  return DataBindingItemQt(obj, nullptr, nullptr, prop, false).SetWidgetProp(value);
}

const char kGruesse[] = u8"Gr\u00FC\u00DFe";

}  // namespace

TEST(DataBindingItemTest, ValuesRoundTripThroughWidgets) {
  QLineEdit line;
  QSpinBox spin;
  QCheckBox check;
  QDoubleSpinBox dspin;
  const struct {
    QObject* widget;
    const char* prop;
    Value written;
    Value read;
  } cases[] = {{&line, "text", kGruesse, kGruesse},
               {&spin, "value", (1LL << 32) + 42, 42},  // ints are 32 bits wide
               {&check, "checked", true, true},
               {&dspin, "value", 0.1, static_cast<double>(0.1f)}};
  for (const auto& c : cases) {
    EXPECT_TRUE(Write(c.widget, c.prop, c.written)) << c.prop;
    EXPECT_EQ(Read(c.widget, c.prop).Cmp(c.read), 0) << c.prop;
  }
  EXPECT_EQ(line.text(), QString::fromUtf8(kGruesse));
  EXPECT_EQ(dspin.value(), 0.1);

  Value untouched;
  EXPECT_FALSE(
      DataBindingItemQt(&line, nullptr, nullptr, "noSuch", false).GetWidgetProp(untouched));
  // A pointer reaches Qt as void*; reading it back has no value counterpart.
  int target = 0;
  Write(&line, "payload", Value(static_cast<void*>(&target)));
  EXPECT_EQ(line.property("payload").userType(), QMetaType::VoidStar);
  EXPECT_EQ(line.property("payload").value<void*>(), &target);
  EXPECT_TRUE(Read(&line, "payload").IsNull());
}

TEST(DataBindingItemTest, DatesAndTimesAreLocalSecondsSinceTheEpoch) {
  QDateTimeEdit date_time;
  EXPECT_TRUE(Write(&date_time, "dateTime", Value(0)));
  EXPECT_EQ(date_time.dateTime(), QDateTime::fromSecsSinceEpoch(0));
  EXPECT_EQ(Read(&date_time, "dateTime").I64(), 0);
  // A date reads back as its local midnight, whatever the time of day written.
  const long long afternoon = 400 * 86400LL + 15 * 3600 + 7;
  QDateEdit date;
  EXPECT_TRUE(Write(&date, "date", Value(afternoon)));
  EXPECT_EQ(date.date(), QDateTime::fromSecsSinceEpoch(afternoon).date());
  const QDateTime midnight = QDateTime::fromSecsSinceEpoch(Read(&date, "date").I64());
  EXPECT_EQ(midnight, date.date().startOfDay());
  // Noon of the epoch's day in UTC is still that day in any local zone.
  const long long noon = 12 * 3600 + 61;
  QTimeEdit time;
  EXPECT_TRUE(Write(&time, "time", Value(noon)));
  EXPECT_EQ(time.time(), QDateTime::fromSecsSinceEpoch(noon).time());
  EXPECT_EQ(Read(&time, "time").I64(), noon);
}

TEST(DataBindingItemTest, WritesOnlyWhatChanges) {
  WriteCounter counter;
  EXPECT_TRUE(Write(&counter, "label", Value("a")));
  EXPECT_TRUE(Write(&counter, "label", Value("a")));
  EXPECT_EQ(counter.writes, 1);
  // A child of a hidden window is not visible, yet must not be shown explicitly.
  QWidget window;
  auto* child = new QWidget(&window);
  EXPECT_TRUE(Write(child, "visible", Value(true)));
  EXPECT_FALSE(child->testAttribute(Qt::WA_WState_ExplicitShowHide));
  EXPECT_TRUE(Write(child, "visible", Value(false)));
  window.show();
  EXPECT_FALSE(child->isVisible());
  EXPECT_TRUE(Write(child, "visible", Value(1)));
  EXPECT_TRUE(child->isVisible());
}

TEST(DataBindingItemTest, EchoedTextKeepsTheCaretOfAFocusedEditor) {
  QWidget window;
  auto* edit = new QPlainTextEdit("hello world", &window);
  window.show();
  window.activateWindow();
  edit->setFocus();
  if (!QTest::qWaitForWindowActive(&window) || !edit->hasFocus()) GTEST_SKIP() << "no focus";
  QTextCursor cursor = edit->textCursor();
  cursor.setPosition(5);
  edit->setTextCursor(cursor);
  const std::pair<const char*, int> echoes[] = {
      {"hello, world", 6}, {"hello, world", 6}, {"hello", 5}, {"hi", 2}};
  for (const auto& [text, caret] : echoes) {
    EXPECT_TRUE(Write(edit, "plainText", Value(text)));
    EXPECT_EQ(edit->textCursor().position(), caret) << text;
  }
}

TEST(DataBindingItemComboBoxTest, OptionsRefillSilently) {
  const std::pair<const char*, QStringList> cases[] = {
      {"one\ntwo\nthree", {"one", "two", "three"}}, {"a\n\nb\n", {"a", "", "b"}}, {"", {}}};
  for (const bool blocked : {false, true}) {
    for (const auto& [options, expected] : cases) {
      QComboBox combo;
      combo.addItems({"old", "older"});
      combo.blockSignals(blocked);
      QSignalSpy spy(&combo, SIGNAL(currentIndexChanged(int)));
      EXPECT_TRUE(DataBindingItemComboBox(&combo, nullptr, nullptr, "options", false)
                      .SetWidgetProp(Value(options)));
      QStringList items;
      for (int i = 0; i < combo.count(); ++i)
        items << combo.itemText(i);
      EXPECT_EQ(items, expected) << options;
      EXPECT_TRUE(spy.isEmpty());
      EXPECT_EQ(combo.signalsBlocked(), blocked);
    }
  }
}

TEST(DataBindingItemComboBoxTest, SelectsByDataThenText) {
  QComboBox combo;
  combo.addItem("Red", "Blue");
  combo.addItem("Blue", "b");
  combo.addItem("Green", "g");
  QSignalSpy spy(&combo, SIGNAL(currentTextChanged(QString)));
  DataBindingItemComboBox item(&combo, nullptr, nullptr, "currentText", false);
  const struct {
    const char* value;
    int index;
    const char* announced;
  } steps[] = {
      {"g", 2, "Green"}, {"Blue", 0, "Red"}, {"Green", 2, "Green"}, {"Purple", 2, "Purple"}};
  for (const auto& step : steps) {
    spy.clear();
    EXPECT_TRUE(item.SetWidgetProp(Value(step.value)));
    EXPECT_EQ(combo.currentIndex(), step.index) << step.value;
    ASSERT_EQ(spy.count(), 1) << step.value;
    EXPECT_EQ(spy[0][0].toString(), step.announced);
  }
  EXPECT_TRUE(DataBindingItemComboBox(&combo, nullptr, nullptr, "currentIndex", false)
                  .SetWidgetProp(Value(1)));
  EXPECT_EQ(combo.currentIndex(), 1);
  ovui_test::LogCapture log;
  EXPECT_FALSE(item.SetWidgetProp(Value()));
  EXPECT_TRUE(log.HasFailedCheck("SetWidgetProp", "QVariantFromValue(qv, value, prop)"));
}

TEST(BindingItemTest, OnlyTheOwnerReleasesAndTheMetaTypesResolve) {
  vm::RegisterBindingItemTypes();
  EXPECT_EQ(QMetaType::type("vm::DataBindingItemQt"), qMetaTypeId<DataBindingItemQt>());
  EXPECT_EQ(QMetaType::type("vm::CommandBindingItemQt"), qMetaTypeId<vm::CommandBindingItemQt>());
  QLineEdit line;
  auto* rule = new vm::DataBinding;
  rule->AddRef();  // ours, to watch the count
  QPointer<PopMenuSupport> menu = new PopMenuSupport;
  {
    DataBindingItemQt item(&line, nullptr, rule, "text", true);
    vm::CommandBindingItemQt command(&line, nullptr, new vm::CommandBinding, true);
    command.menu_support = menu;
    line.setProperty("data-binding", QVariant::fromValue(item));
    line.setProperty("cmd-binding", QVariant::fromValue(command));
    const auto back = line.property("data-binding").value<DataBindingItemQt>();
    EXPECT_EQ(back.rule, rule);
    EXPECT_FALSE(back.owns);
    EXPECT_EQ(line.property("cmd-binding").value<vm::CommandBindingItemQt>().menu_support,
              menu.data());
    DataBindingItemQt assigned(&line, nullptr, new vm::DataBinding, "text", true);
    assigned = item;  // gives up its own rule, adopts none
    line.setProperty("data-binding", QVariant());
    line.setProperty("cmd-binding", QVariant());
    EXPECT_FALSE(menu.isNull());
  }
  EXPECT_EQ(rule->RefCount(), 1);
  EXPECT_TRUE(menu.isNull());
  rule->Release();
}

#include "data_binding_item_test.moc"
