#include "mvvm/data_binding.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "mvvm/data_binding_parser.h"
#include "mvvm/view_model.h"
#include "support/log_capture.h"
#include "support/toy_objects.h"

using vm::DataBinding;
using vm::DataBindingParser;

namespace {

struct DataBindingVmTest : testing::Test {
  DataBindingVmTest() {
    vm->InstallProp("n", &n), vm->InstallProp("text", &text);
    vm->RegisterConverter("x10", new ovui_test::ScaleConverter(10));
    vm->RegisterValidator("range", new ovui_test::RangeValidator(0, 5));
  }
  ~DataBindingVmTest() override { vm->Release(); }
  const DataBinding& Binding(const char* path, const char* converter = "",
                             const char* validator = "") {
    binding.path = path;
    binding.converter = converter;
    binding.validator = validator;
    return binding;
  }

  int n = 3;
  std::string text = "t";
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
      {"{Binding x, TRIGGER=changed}", "{BindingPath=x, Trigger=Changed, Mode=TwoWay}"},
      {"{Binding x, Trigger=Changed, Trigger=CHANGING}",
       "{BindingPath=x, Trigger=Changing, Mode=TwoWay}"},
      {"{Binding x, Trigger=never}", "{BindingPath=x, Trigger=Explicit, Mode=TwoWay}"},
      {"{x, converter=c, VALIDATOR=v}",
       "{BindingPath=x, Trigger=Changing, Mode=TwoWay, Converter=c, Validator=v}"},
      // A lone default key binds "path", lower-cased; with a value it is the value.
      {"{Binding PATH}", "{BindingPath=path, Trigger=Changing, Mode=TwoWay}"},
      {"{Binding Path, Mode=OneWay}", "{BindingPath=Path, Trigger=Changing, Mode=OneWay}"},
      {"{Binding Path=x, Path}", "{BindingPath=, Trigger=Changing, Mode=TwoWay}"},
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

  std::vector<DataBinding*> bindings{new DataBinding()};
  EXPECT_TRUE(DataBindingParser::FromString("{a}\r\n\r\n{b, Mode=OneWay}\n{}\r   \n", bindings));
  ASSERT_EQ(bindings.size(), 4u);  // appended; "{}" skipped, "   " long enough
  EXPECT_EQ(bindings[1]->path, "a");
  EXPECT_EQ(bindings[2]->mode, DataBinding::MODE_ONE_WAY);
  EXPECT_EQ(bindings[3]->path, "");
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
  EXPECT_TRUE(Binding("n").GetPropW(vm, v));
  EXPECT_EQ(v.I64(), 3);
  EXPECT_TRUE(Binding("n", "x10").GetPropW(vm, v));
  EXPECT_EQ(v.I64(), 30);
  EXPECT_FALSE(Binding("nothing", "x10").GetPropW(vm, v));
  EXPECT_EQ(log.Text(), "");

  EXPECT_FALSE(Binding("n", "nope").GetPropW(vm, v));
  EXPECT_TRUE(log.HasFailedCheck("GetPropW", "vm->HasConverter(this->converter)"));
  EXPECT_FALSE(Binding("text", "x10").GetPropW(vm, v));  // the converter refuses text
  EXPECT_TRUE(log.HasFailedCheck("GetPropW", "vm->Convert(this->converter, value, cvalue)"));
}

TEST_F(DataBindingVmTest, SetPropWConvertsValidatesThenWrites) {
  std::string error = "untouched";
  // 40 is out of range, but the validator sees the converted 4.
  EXPECT_TRUE(Binding("n", "x10", "range").SetPropW(vm, base::Value(40), error));
  EXPECT_EQ(n, 4);
  EXPECT_EQ(error, "untouched");
  EXPECT_TRUE(Binding("n").SetPropW(vm, base::Value(75), error));
  EXPECT_EQ(n, 75);
}

TEST_F(DataBindingVmTest, SetPropWFailuresWriteNothing) {
  const struct {
    const char* path;
    const char* converter;
    const char* validator;
    base::Value input;
    const char* error;
  } cases[] = {
      {"nothing", "nope", "nope", 10, "no prop nothing"},
      {"n", "nope", "range", 10, "no converter nope"},
      {"n", "x10", "range", "ten", "converter failed: x10"},
      {"n", "x10", "nope", 10, "no validator nope"},
      {"n", "x10", "range", 90, "must be between 0 and 5"},
  };
  for (const auto& c : cases) {
    std::string error = "previous text";
    EXPECT_FALSE(Binding(c.path, c.converter, c.validator).SetPropW(vm, c.input, error));
    EXPECT_EQ(error, c.error);
  }
  EXPECT_EQ(n, 3);
  EXPECT_EQ(log.Text(), "");  // reported through the error text only
}
