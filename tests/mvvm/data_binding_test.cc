#include "mvvm/data_binding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "mvvm/data_binding_parser.h"
#include "mvvm/view_model.h"
#include "support/log_capture.h"

using vm::DataBinding;
using vm::DataBindingParser;

namespace {

// A ratio in the model (0.25) shown as a whole percentage (25); or refuses both ways.
class PercentConverter : public vm::IConverter {
 public:
  explicit PercentConverter(bool works) : works(works) {}
  bool Convert(const base::Value& from, base::Value& to) override {
    to.I64(std::llround(from.F64() * 100));
    return works;
  }
  bool ConvertBack(const base::Value& from, base::Value& to) override {
    to.F64(static_cast<double>(from.I64()) / 100);
    return works;
  }
  bool works;
};

// Accepts numbers up to 0.5 and remembers the last value it saw.
class MaxValidator : public vm::IValidator {
 public:
  explicit MaxValidator(base::Value* seen) : seen(seen) {}
  bool IsValid(const base::Value& v, std::string& msg) override {
    *seen = v;
    if (v.F64() <= 0.5) return true;
    msg = "too large";
    return false;
  }
  base::Value* seen;
};

struct DataBindingVmTest : testing::Test {
  DataBindingVmTest() {
    vm->InstallProp("ratio", &ratio);
    vm->RegisterConverter("percent", new PercentConverter(true));
    vm->RegisterConverter("refuse", new PercentConverter(false));
    vm->RegisterValidator("max", new MaxValidator(&seen));
  }
  ~DataBindingVmTest() override { vm->Release(); }
  const DataBinding& Binding(const char* path, const char* converter = "",
                             const char* validator = "") {
    binding.path = path;
    binding.converter = converter;
    binding.validator = validator;
    return binding;
  }

  double ratio = 0.25;
  base::Value seen;
  vm::ViewModel* vm = new vm::ViewModel();
  ovui_test::LogCapture log;
  DataBinding binding;
};

}  // namespace

// Each rule is compared through its ToString text, whose exact form is pinned below.
TEST(DataBindingParserTest, KeysAndWords) {
  const std::pair<const char*, const char*> cases[] = {
      {"{a}", "{BindingPath=a, Trigger=Changing, Mode=TwoWay}"},
      {"{Binding x, mode=oneway}", "{BindingPath=x, Trigger=Changing, Mode=OneWay}"},
      {"{Binding x, Mode=ONEWAYTOMODEL}", "{BindingPath=x, Trigger=Changing, Mode=OneWayToModel}"},
      {"{Binding x, Mode=OneWay, Mode=TwoWay}", "{BindingPath=x, Trigger=Changing, Mode=TwoWay}"},
      // "TwoWay" only in exact case, never "Once"; other words change nothing.
      {"{Binding x, Mode=OneWay, Mode=twoway}", "{BindingPath=x, Trigger=Changing, Mode=OneWay}"},
      {"{Binding x, Mode=OneWay, Mode=Once}", "{BindingPath=x, Trigger=Changing, Mode=OneWay}"},
      {"{Binding x, Mode=sideways}", "{BindingPath=x, Trigger=Changing, Mode=TwoWay}"},
      {"{Binding x, TRIGGER=changed}", "{BindingPath=x, Trigger=Changed, Mode=TwoWay}"},
      {"{Binding x, Trigger=Changed, Trigger=CHANGING}",
       "{BindingPath=x, Trigger=Changing, Mode=TwoWay}"},
      {"{Binding x, Trigger=explicit}", "{BindingPath=x, Trigger=Explicit, Mode=TwoWay}"},
      {"{Binding x, Trigger=never}", "{BindingPath=x, Trigger=Explicit, Mode=TwoWay}"},
      {"{Binding x, Trigger=}", "{BindingPath=x, Trigger=Explicit, Mode=TwoWay}"},
      {"{x, converter=c, VALIDATOR=v}",
       "{BindingPath=x, Trigger=Changing, Mode=TwoWay, Converter=c, Validator=v}"},
      // A lone default key binds "path", lower-cased; with a value it is the value.
      {"{Binding PATH}", "{BindingPath=path, Trigger=Changing, Mode=TwoWay}"},
      {"{Binding Path, Mode=OneWay}", "{BindingPath=Path, Trigger=Changing, Mode=OneWay}"},
      {"{Binding Path=x, Path}", "{BindingPath=, Trigger=Changing, Mode=TwoWay}"},
      {"{Binding Path=\"Title\"}", "{BindingPath=\"Title\", Trigger=Changing, Mode=TwoWay}"},
  };
  for (const auto& c : cases) {
    DataBinding* b = DataBindingParser::FromString(c.first);
    ASSERT_NE(b, nullptr) << c.first;
    EXPECT_EQ(DataBindingParser::ToString(b), c.second) << c.first;
    EXPECT_TRUE(b->params.empty()) << c.first;
    b->Release();
  }

  DataBinding* b =
      DataBindingParser::FromString("{Binding Name, Format=a, FORMAT=0.00, x=\"A, B\"}");
  EXPECT_EQ(b->params, (std::map<std::string, std::string>{{"format", "0.00"}, {"x", "\"A, B\""}}));
  b->Release();
}

TEST(DataBindingParserTest, TooShortTextsAndLines) {
  ovui_test::LogCapture log;
  EXPECT_EQ(DataBindingParser::FromString("{}"), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("FromString", "str.size() > 2"));

  log.Clear();
  std::vector<DataBinding*> bindings{new DataBinding()};
  EXPECT_TRUE(DataBindingParser::FromString("{a}\r\n\r\n{b, Mode=OneWay}\n{}\r   \n", bindings));
  ASSERT_EQ(bindings.size(), 4u);  // appended; "{}" skipped, "   " long enough
  EXPECT_EQ(bindings[1]->path, "a");
  EXPECT_EQ(bindings[2]->mode, DataBinding::MODE_ONE_WAY);
  EXPECT_EQ(bindings[3]->path, "");
  EXPECT_TRUE(log.HasFailedCheck("FromString", "str.size() > 2"));
  for (DataBinding* b : bindings)
    b->Release();
}

// Texts of every code and field come through KeysAndWords; these are the ones no rule gives.
TEST(DataBindingParserTest, ToStringTexts) {
  DataBinding b;
  b.path = "Title";
  b.params["format"] = "0.00";  // never written
  b.mode = DataBinding::MODE_ONCE;
  b.trigger = 7;
  EXPECT_EQ(DataBindingParser::ToString(&b), "{BindingPath=Title, Trigger=Changing, Mode=Once}");
  b.mode = -1;
  b.validator = "len";
  EXPECT_EQ(DataBindingParser::ToString(&b),
            "{BindingPath=Title, Trigger=Changing, Mode=TwoWay, Validator=len}");

  // The tag runs into "Path", so the text does not read back as the same path.
  DataBinding* back = DataBindingParser::FromString(DataBindingParser::ToString(&b));
  EXPECT_EQ(back->path, "BindingPath=Title");
  back->Release();
}

TEST(DataBindingTest, AsOneWayKeepsOnce) {
  const std::pair<int, int> cases[] = {{0, 1}, {1, 1}, {2, 1}, {3, 3}};
  for (const auto& c : cases) {
    DataBinding b;
    b.mode = c.first;
    b.AsOneWay();
    EXPECT_EQ(b.mode, c.second) << "from " << c.first;
  }
}

TEST_F(DataBindingVmTest, GetPropWReadsThroughTheConverter) {
  base::Value v;
  EXPECT_TRUE(Binding("ratio").GetPropW(vm, v));
  EXPECT_DOUBLE_EQ(v.F64(), 0.25);
  EXPECT_TRUE(Binding("ratio", "percent").GetPropW(vm, v));
  EXPECT_EQ(v.Type(), base::Value::TYPE_INT);
  EXPECT_EQ(v.I64(), 25);
  EXPECT_FALSE(Binding("nothing", "percent").GetPropW(vm, v));
  EXPECT_EQ(log.Text(), "");

  EXPECT_FALSE(Binding("ratio", "nope").GetPropW(vm, v));
  EXPECT_TRUE(log.HasFailedCheck("GetPropW", "vm->HasConverter(this->converter)"));
  EXPECT_FALSE(Binding("ratio", "refuse").GetPropW(vm, v));
  EXPECT_TRUE(log.HasFailedCheck("GetPropW", "vm->Convert(this->converter, value, cvalue)"));
}

TEST_F(DataBindingVmTest, SetPropWConvertsValidatesThenWrites) {
  std::string error = "untouched";
  EXPECT_TRUE(Binding("ratio", "percent", "max").SetPropW(vm, base::Value(40), error));
  EXPECT_DOUBLE_EQ(ratio, 0.4);
  EXPECT_EQ(seen.Type(), base::Value::TYPE_FLOAT);  // the validator saw the converted value
  EXPECT_EQ(error, "untouched");
  EXPECT_TRUE(Binding("ratio").SetPropW(vm, base::Value(0.75), error));
  EXPECT_DOUBLE_EQ(ratio, 0.75);
}

TEST_F(DataBindingVmTest, SetPropWFailuresWriteNothing) {
  const struct {
    const char* path;
    const char* converter;
    const char* validator;
    int input;
    const char* error;
  } cases[] = {
      {"nothing", "nope", "nope", 10, "no prop nothing"},
      {"ratio", "nope", "max", 10, "no converter nope"},
      {"ratio", "refuse", "max", 10, "converter failed: refuse"},
      {"ratio", "percent", "nope", 10, "no validator nope"},
      {"ratio", "percent", "max", 90, "too large"},
      {"ratio", "", "max", 9, "too large"},
  };
  for (const auto& c : cases) {
    std::string error = "previous text";
    EXPECT_FALSE(Binding(c.path, c.converter, c.validator).SetPropW(vm, c.input, error));
    EXPECT_EQ(error, c.error);
  }
  EXPECT_DOUBLE_EQ(ratio, 0.25);
  EXPECT_EQ(log.Text(), "");  // reported through the error text only
}
