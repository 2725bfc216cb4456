#include "mvvm/data_binding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "mvvm/data_binding_parser.h"
#include "mvvm/view_model.h"
#include "support/log_capture.h"
#include "support/recording_listener.h"

using vm::DataBinding;
using vm::DataBindingParser;

namespace {

// A ratio in the model (0.25) shown as a whole percentage (25).
class PercentConverter : public vm::IConverter {
 public:
  bool Convert(const base::Value& from, base::Value& to) override {
    to.I64(std::llround(from.F64() * 100));
    return true;
  }
  bool ConvertBack(const base::Value& from, base::Value& to) override {
    to.F64(static_cast<double>(from.I64()) / 100);
    return true;
  }
};

class RefusingConverter : public vm::IConverter {
 public:
  bool Convert(const base::Value&, base::Value&) override { return false; }
  bool ConvertBack(const base::Value&, base::Value&) override { return false; }
};

// Accepts numbers up to `max` and remembers the last value it saw.
class MaxValidator : public vm::IValidator {
 public:
  MaxValidator(double max, base::Value* seen) : max(max), seen(seen) {}
  bool IsValid(const base::Value& v, std::string& msg) override {
    *seen = v;
    if (v.F64() <= max) return true;
    msg = "too large";
    return false;
  }

 private:
  double max;
  base::Value* seen;
};

DataBinding* Binding(const std::string& path, const std::string& converter = "",
                     const std::string& validator = "") {
  auto* b = new DataBinding();
  b->path = path;
  b->converter = converter;
  b->validator = validator;
  return b;
}

struct DataBindingVmTest : testing::Test {
  DataBindingVmTest() {
    vm->InstallProp("ratio", &ratio);
    vm->InstallProp("title", &title);
    vm->RegisterConverter("percent", new PercentConverter());
    vm->RegisterConverter("refuse", new RefusingConverter());
    vm->RegisterValidator("max", new MaxValidator(0.5, &seen));
    vm->On("prop-changed", listener);
  }
  ~DataBindingVmTest() override {
    vm->Off("prop-changed", listener);
    listener->Release();
    vm->Release();
  }

  double ratio = 0.25;
  std::string title = "Hello";
  base::Value seen;
  vm::ViewModel* vm = new vm::ViewModel();
  ovui_test::RecordingListener* listener = new ovui_test::RecordingListener();
};

}  // namespace

TEST(DataBindingParserTest, KeysModesAndTriggers) {
  using Params = std::map<std::string, std::string>;
  struct Case {
    const char* rule;
    std::string path;
    int mode;
    int trigger;
    std::string converter;
    std::string validator;
    Params params;
  };
  const int two = DataBinding::MODE_TWO_WAY, one = DataBinding::MODE_ONE_WAY,
            to_model = DataBinding::MODE_ONE_WAY_TO_MODEL;
  const int changed = DataBinding::TRIGGER_CHANGED, changing = DataBinding::TRIGGER_CHANGING,
            explicit_ = DataBinding::TRIGGER_EXPLICIT;
  const Case cases[] = {
      {"{Binding Title}", "Title", two, changing, "", "", {}},
      {"{a}", "a", two, changing, "", "", {}},
      {"{Binding Path=Title, Mode=OneWay, Converter=upper, Validator=len}",
       "Title",
       one,
       changing,
       "upper",
       "len",
       {}},
      {"{Binding x, mode=oneway, CONVERTER=c, validator=v}", "x", one, changing, "c", "v", {}},
      {"{Binding x, Mode=ONEWAYTOMODEL}", "x", to_model, changing, "", "", {}},
      {"{Binding x, Mode=OneWay, Mode=TwoWay}", "x", two, changing, "", "", {}},
      // "TwoWay" only in exact case; "Once" never from text; other words change nothing.
      {"{Binding x, Mode=OneWay, Mode=twoway}", "x", one, changing, "", "", {}},
      {"{Binding x, Mode=OneWay, Mode=Once}", "x", one, changing, "", "", {}},
      {"{Binding x, Mode=Once}", "x", two, changing, "", "", {}},
      {"{Binding x, Mode=sideways}", "x", two, changing, "", "", {}},
      {"{Binding x, Trigger=Changed}", "x", two, changed, "", "", {}},
      {"{Binding x, trigger=CHANGED}", "x", two, changed, "", "", {}},
      {"{Binding x, Trigger=Changed, Trigger=changing}", "x", two, changing, "", "", {}},
      {"{Binding x, Trigger=explicit}", "x", two, explicit_, "", "", {}},
      {"{Binding x, Trigger=never}", "x", two, explicit_, "", "", {}},
      {"{Binding x, Trigger=}", "x", two, explicit_, "", "", {}},
      // A lone default key binds the property named like it, lower-cased.
      {"{Binding Path}", "path", two, changing, "", "", {}},
      {"{Binding PATH}", "path", two, changing, "", "", {}},
      {"{Binding Path, Mode=OneWay}", "Path", one, changing, "", "", {}},
      {"{Binding Path=x, Path}", "", two, changing, "", "", {}},
      // Unknown keys are kept lower-cased, the last one written winning.
      {"{Binding Name, Format=0.00}", "Name", two, changing, "", "", {{"format", "0.00"}}},
      {"{Binding x, Format=a, FORMAT=b, Header=\"A, B\"}",
       "x",
       two,
       changing,
       "",
       "",
       {{"format", "b"}, {"header", "\"A, B\""}}},
      {"{Binding Path=\"Title\"}", "\"Title\"", two, changing, "", "", {}},
  };
  for (const Case& c : cases) {
    DataBinding* b = DataBindingParser::FromString(c.rule);
    ASSERT_NE(b, nullptr) << c.rule;
    EXPECT_EQ(b->path, c.path) << c.rule;
    EXPECT_EQ(b->mode, c.mode) << c.rule;
    EXPECT_EQ(b->trigger, c.trigger) << c.rule;
    EXPECT_EQ(b->converter, c.converter) << c.rule;
    EXPECT_EQ(b->validator, c.validator) << c.rule;
    EXPECT_EQ(b->params, c.params) << c.rule;
    EXPECT_EQ(b->RefCount(), 1);
    b->Release();
  }
}

TEST(DataBindingParserTest, TooShortTextIsLoggedAndGivesNull) {
  ovui_test::LogCapture log;
  EXPECT_EQ(DataBindingParser::FromString("{}"), nullptr);
  EXPECT_EQ(DataBindingParser::FromString(""), nullptr);
  const std::string text = log.Text();
  EXPECT_NE(text.find("data_binding_parser.cc:"), std::string::npos);
  EXPECT_NE(text.find("[2] FromString:"), std::string::npos);
  EXPECT_TRUE(log.HasLineEndingWith(" str.size() > 2"));

  log.Clear();
  DataBinding* b = DataBindingParser::FromString("   ");  // long enough, however empty
  ASSERT_NE(b, nullptr);
  EXPECT_EQ(b->path, "");
  EXPECT_EQ(log.Text(), "");
  b->Release();
}

TEST(DataBindingParserTest, OneRulePerLine) {
  ovui_test::LogCapture log;
  std::vector<DataBinding*> bindings{new DataBinding()};
  EXPECT_TRUE(DataBindingParser::FromString(
      "{Binding a}\r\n\r\n{Binding b, Mode=OneWay}\n{}\r{c}\n\n", bindings));
  ASSERT_EQ(bindings.size(), 4u);  // appended after what was there
  EXPECT_EQ(bindings[1]->path, "a");
  EXPECT_EQ(bindings[2]->path, "b");
  EXPECT_EQ(bindings[2]->mode, DataBinding::MODE_ONE_WAY);
  EXPECT_EQ(bindings[3]->path, "c");
  EXPECT_TRUE(log.HasLineEndingWith(" str.size() > 2"));  // the "{}" line
  for (DataBinding* b : bindings)
    b->Release();

  std::vector<DataBinding*> none;
  EXPECT_TRUE(DataBindingParser::FromString("\r\n\n", none));
  EXPECT_TRUE(none.empty());
}

TEST(DataBindingParserTest, ToStringTexts) {
  DataBinding* b = Binding("Title");
  EXPECT_EQ(DataBindingParser::ToString(b), "{BindingPath=Title, Trigger=Changing, Mode=TwoWay}");

  b->params["format"] = "0.00";  // never written
  b->mode = DataBinding::MODE_ONE_WAY;
  b->trigger = DataBinding::TRIGGER_CHANGED;
  b->converter = "upper";
  EXPECT_EQ(DataBindingParser::ToString(b),
            "{BindingPath=Title, Trigger=Changed, Mode=OneWay, Converter=upper}");

  b->mode = DataBinding::MODE_ONE_WAY_TO_MODEL;
  b->trigger = DataBinding::TRIGGER_EXPLICIT;
  b->validator = "len";
  EXPECT_EQ(DataBindingParser::ToString(b),
            "{BindingPath=Title, Trigger=Explicit, Mode=OneWayToModel, Converter=upper, "
            "Validator=len}");

  b->mode = DataBinding::MODE_ONCE;
  b->trigger = 7;
  b->converter.clear();
  EXPECT_EQ(DataBindingParser::ToString(b),
            "{BindingPath=Title, Trigger=Changing, Mode=Once, Validator=len}");
  b->mode = -1;
  EXPECT_EQ(DataBindingParser::ToString(b),
            "{BindingPath=Title, Trigger=Changing, Mode=TwoWay, Validator=len}");

  // The tag runs into "Path", so the text does not read back as the same path.
  DataBinding* back = DataBindingParser::FromString(DataBindingParser::ToString(b));
  EXPECT_EQ(back->path, "BindingPath=Title");
  back->Release();
  b->Release();
}

TEST(DataBindingTest, AsOneWayKeepsOnce) {
  const std::pair<int, int> cases[] = {
      {DataBinding::MODE_TWO_WAY, DataBinding::MODE_ONE_WAY},
      {DataBinding::MODE_ONE_WAY, DataBinding::MODE_ONE_WAY},
      {DataBinding::MODE_ONE_WAY_TO_MODEL, DataBinding::MODE_ONE_WAY},
      {DataBinding::MODE_ONCE, DataBinding::MODE_ONCE},
  };
  for (const auto& c : cases) {
    DataBinding b;
    b.mode = c.first;
    b.AsOneWay();
    EXPECT_EQ(b.mode, c.second) << "from " << c.first;
  }
}

TEST_F(DataBindingVmTest, GetPropWReadsThroughTheConverter) {
  ovui_test::LogCapture log;
  base::Value v;
  DataBinding* plain = Binding("title");
  EXPECT_TRUE(plain->GetPropW(vm, v));
  EXPECT_STREQ(v.Str(), "Hello");
  plain->Release();

  DataBinding* percent = Binding("ratio", "percent");
  EXPECT_TRUE(percent->GetPropW(vm, v));
  EXPECT_EQ(v.Type(), base::Value::TYPE_INT);
  EXPECT_EQ(v.I64(), 25);
  percent->Release();

  DataBinding* missing = Binding("nothing", "percent");
  EXPECT_FALSE(missing->GetPropW(vm, v));
  missing->Release();
  EXPECT_EQ(log.Text(), "");  // an unknown path is not logged here
}

TEST_F(DataBindingVmTest, GetPropWLogsConverterFailures) {
  ovui_test::LogCapture log;
  base::Value v;
  DataBinding* unknown = Binding("ratio", "nope");
  EXPECT_FALSE(unknown->GetPropW(vm, v));
  EXPECT_TRUE(log.HasLineEndingWith(" vm->HasConverter(this->converter)"));
  EXPECT_NE(log.Text().find("[2] GetPropW:"), std::string::npos);
  unknown->Release();

  log.Clear();
  DataBinding* refusing = Binding("ratio", "refuse");
  EXPECT_FALSE(refusing->GetPropW(vm, v));
  EXPECT_TRUE(log.HasLineEndingWith(" vm->Convert(this->converter, value, cvalue)"));
  refusing->Release();
}

TEST_F(DataBindingVmTest, SetPropWConvertsValidatesThenWrites) {
  DataBinding* b = Binding("ratio", "percent", "max");
  std::string error = "untouched";
  EXPECT_TRUE(b->SetPropW(vm, base::Value(40), error));
  EXPECT_DOUBLE_EQ(ratio, 0.4);
  EXPECT_EQ(seen.Type(), base::Value::TYPE_FLOAT);  // the validator saw the converted value
  EXPECT_DOUBLE_EQ(seen.F64(), 0.4);
  EXPECT_EQ(error, "untouched");
  EXPECT_EQ(listener->events.size(), 1u);
  b->Release();

  DataBinding* plain = Binding("title");
  EXPECT_TRUE(plain->SetPropW(vm, base::Value("World"), error));
  EXPECT_EQ(title, "World");
  plain->Release();
}

TEST_F(DataBindingVmTest, SetPropWFailuresWriteNothing) {
  struct Case {
    const char* path;
    const char* converter;
    const char* validator;
    long long input;
    const char* error;
  };
  const Case cases[] = {
      {"nothing", "", "", 10, "no prop nothing"},
      {"nothing", "nope", "nope", 10, "no prop nothing"},
      {"ratio", "nope", "max", 10, "no converter nope"},
      {"ratio", "refuse", "max", 10, "converter failed: refuse"},
      {"ratio", "percent", "nope", 10, "no validator nope"},
      {"ratio", "percent", "max", 90, "too large"},
      {"ratio", "", "max", 9, "too large"},
  };
  ovui_test::LogCapture log;
  for (const Case& c : cases) {
    DataBinding* b = Binding(c.path, c.converter, c.validator);
    std::string error = "previous text";
    EXPECT_FALSE(b->SetPropW(vm, base::Value(c.input), error)) << c.error;
    EXPECT_EQ(error, c.error);
    b->Release();
  }
  EXPECT_DOUBLE_EQ(ratio, 0.25);
  EXPECT_TRUE(listener->events.empty());
  EXPECT_EQ(log.Text(), "");  // reported through the error text only
}
