#include "mvvm/data_binding.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "mvvm/data_binding_parser.h"
#include "mvvm/view_model.h"
#include "support/log_capture.h"
#include "support/toy_objects.h"

using vm::DataBinding;
using vm::DataBindingParser;

// Compared through ToString. "TwoWay" counts only in exact case, "Once" never; other trigger
// words mean Explicit. A lone default key binds "path", lower-cased.
TEST(DataBindingParserTest, KeysAndWords) {
  const std::pair<const char*, const char*> cases[] = {
      {"{x, mode=oneway, TRIGGER=changed}", "{BindingPath=x, Trigger=Changed, Mode=OneWay}"},
      {"{x, Mode=ONEWAYTOMODEL, Trigger=never, converter=c, VALIDATOR=v}",
       "{BindingPath=x, Trigger=Explicit, Mode=OneWayToModel, Converter=c, Validator=v}"},
      {"{x, Mode=OneWay, Mode=twoway, Mode=Once, Trigger=Changed, Trigger=CHANGING}",
       "{BindingPath=x, Trigger=Changing, Mode=OneWay}"},
      {"{x, Mode=OneWay, Mode=TwoWay}", "{BindingPath=x, Trigger=Changing, Mode=TwoWay}"},
      {"{Binding PATH}", "{BindingPath=path, Trigger=Changing, Mode=TwoWay}"},
      {"{Binding Path=x, Path}", "{BindingPath=, Trigger=Changing, Mode=TwoWay}"}};
  for (const auto& [rule, text] : cases) {
    DataBinding* b = DataBindingParser::FromString(rule);
    EXPECT_EQ(DataBindingParser::ToString(b), text) << rule;
    b->Release();
  }
  // Only unknown keys, lower-cased, with values as written.
  DataBinding* b =
      DataBindingParser::FromString("{Name, Format=a, FORMAT=0.00, Mode=x, x=\"A, B\"}");
  EXPECT_EQ(b->params, (std::map<std::string, std::string>{{"format", "0.00"}, {"x", "\"A, B\""}}));
  b->Release();
}

TEST(DataBindingParserTest, LinesTooShortTextsToStringAndAsOneWay) {
  std::vector<DataBinding*> bindings{new DataBinding()};
  EXPECT_TRUE(DataBindingParser::FromString("{a}\r\n\r\n{b, Mode=OneWay}\n{}\r   \n", bindings));
  ASSERT_EQ(bindings.size(), 4u);  // appended; "{}" skipped, "   " long enough
  EXPECT_EQ(bindings[1]->path + bindings[2]->path + bindings[3]->path, "ab");
  for (DataBinding* b : bindings)
    b->Release();

  // Texts no rule gives: Once, an unknown trigger, a validator alone; params are never written.
  DataBinding b;
  b.path = "Title", b.params["format"] = "0.00", b.mode = DataBinding::MODE_ONCE, b.trigger = 7;
  EXPECT_EQ(DataBindingParser::ToString(&b), "{BindingPath=Title, Trigger=Changing, Mode=Once}");
  b.AsOneWay();
  EXPECT_EQ(b.mode, DataBinding::MODE_ONCE);  // kept
  b.mode = -1;
  b.validator = "len";
  EXPECT_EQ(DataBindingParser::ToString(&b),
            "{BindingPath=Title, Trigger=Changing, Mode=TwoWay, Validator=len}");
  b.AsOneWay();
  EXPECT_EQ(b.mode, DataBinding::MODE_ONE_WAY);
  // The tag runs into "Path", so the text does not read back as the same path.
  DataBinding* back = DataBindingParser::FromString(DataBindingParser::ToString(&b));
  EXPECT_EQ(back->path, "BindingPath=Title");
  back->Release();
}

TEST(DataBindingTest, SetPropWConvertsValidatesThenWritesAndGetPropWConverts) {
  int n = 3;
  std::string text = "t";
  auto* vm = new vm::ViewModel();
  vm->InstallProp("n", &n);
  vm->InstallProp("text", &text);
  vm->RegisterConverter("x10", new ovui_test::ScaleConverter(10));
  vm->RegisterValidator("range", new ovui_test::RangeValidator(0, 5));
  ovui_test::LogCapture log;
  DataBinding b;
  auto binding = [&b](const char* path, const char* converter = "", const char* validator = "") {
    b.path = path;
    b.converter = converter;
    b.validator = validator;
    return &b;
  };
  // Rows that fail leave n as the second row wrote it: 40 converts to 4, in range.
  const std::tuple<const char*, const char*, const char*, base::Value, const char*> cases[] = {
      {"n", "", "", 75, nullptr},
      {"n", "x10", "range", 40, nullptr},
      {"nothing", "nope", "nope", 10, "no prop nothing"},
      {"n", "nope", "range", 10, "no converter nope"},
      {"n", "x10", "range", "ten", "converter failed: x10"},
      {"n", "x10", "nope", 10, "no validator nope"},
      {"n", "x10", "range", 90, "must be between 0 and 5"}};
  for (const auto& [path, converter, validator, input, message] : cases) {
    std::string error = "previous text";
    EXPECT_EQ(binding(path, converter, validator)->SetPropW(vm, input, error), !message) << path;
    EXPECT_EQ(error, message ? message : "previous text");
  }
  EXPECT_EQ(n, 4);
  base::Value v;
  EXPECT_FALSE(binding("nothing", "x10")->GetPropW(vm, v));
  EXPECT_EQ(log.Text(), "");  // neither an unreadable path nor SetPropW failures are logged

  EXPECT_TRUE(binding("n")->GetPropW(vm, v) && v.I64() == 4);
  EXPECT_TRUE(binding("n", "x10")->GetPropW(vm, v) && v.I64() == 40);
  EXPECT_FALSE(binding("text", "x10")->GetPropW(vm, v));  // the converter refuses text
  EXPECT_TRUE(log.HasFailedCheck("GetPropW", "vm->Convert(this->converter, value, cvalue)"));
  vm->Release();
}
