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

// "TwoWay" counts only in exact case, "Once" never; other trigger words mean Explicit. A lone
// default key binds "path". Unknown keys become params, lower-cased; too short lines are skipped.
TEST(DataBindingParserTest, KeysWordsParamsLinesAndTexts) {
  const std::pair<const char*, const char*> cases[] = {
      {"{x, mode=oneway, TRIGGER=changed}", "{BindingPath=x, Trigger=Changed, Mode=OneWay}"},
      {"{x, Mode=ONEWAYTOMODEL, Trigger=never, converter=c, VALIDATOR=v}",
       "{BindingPath=x, Trigger=Explicit, Mode=OneWayToModel, Converter=c, Validator=v}"},
      {"{x, Mode=OneWay, Mode=twoway, Mode=Once, Trigger=Changed, Trigger=CHANGING}",
       "{BindingPath=x, Trigger=Changing, Mode=OneWay}"},
      {"{x, Mode=OneWay, Mode=TwoWay}", "{BindingPath=x, Trigger=Changing, Mode=TwoWay}"},
      {"{Binding PATH}", "{BindingPath=path, Trigger=Changing, Mode=TwoWay}"},
      {"{Binding Path=x, Path}", "{BindingPath=, Trigger=Changing, Mode=TwoWay}"}};
  std::vector<DataBinding*> bindings;
  for (const auto& [rule, text] : cases) {
    bindings.push_back(DataBindingParser::FromString(rule));
    EXPECT_EQ(DataBindingParser::ToString(bindings.back()), text) << rule;
  }
  DataBinding* b = bindings.emplace_back(
      DataBindingParser::FromString("{N, Format=0, FORMAT=0.00, Mode=x, x=\"A, B\"}"));
  EXPECT_EQ(b->params, (std::map<std::string, std::string>{{"format", "0.00"}, {"x", "\"A, B\""}}));
  // Texts no rule gives: Once, an unknown trigger; params are never written. AsOneWay keeps Once.
  b->mode = DataBinding::MODE_ONCE;
  b->trigger = 7;
  EXPECT_EQ(DataBindingParser::ToString(b), "{BindingPath=N, Trigger=Changing, Mode=Once}");
  b->AsOneWay();
  bindings[3]->AsOneWay();  // TwoWay
  EXPECT_EQ(b->mode, DataBinding::MODE_ONCE);
  EXPECT_EQ(bindings[3]->mode, DataBinding::MODE_ONE_WAY);
  EXPECT_TRUE(DataBindingParser::FromString("{a}\r\n\r\n{b, Mode=OneWay}\n{}\r   \n", bindings));
  ASSERT_EQ(bindings.size(), 10u);  // appended; "{}" skipped, "   " long enough
  EXPECT_EQ(bindings[7]->path + bindings[8]->path + bindings[9]->path, "ab");
  for (DataBinding* each : bindings)
    each->Release();
}

TEST(DataBindingTest, SetPropWConvertsValidatesThenWritesAndGetPropWConverts) {
  int n = 3;
  vm::ViewModel model;
  model.InstallProp("n", &n);
  model.RegisterConverter("x10", new ovui_test::ScaleConverter(10));
  model.RegisterValidator("range", new ovui_test::RangeValidator(0, 5));
  ovui_test::LogCapture log;
  DataBinding b;
  auto binding = [&b](const char* path, const char* converter = "", const char* validator = "") {
    b.path = path;
    b.converter = converter;
    b.validator = validator;
    return &b;
  };
  // Rows that fail leave n as the first row wrote it (40 converts to 4, in range), unlogged.
  const std::tuple<const char*, const char*, const char*, base::Value, const char*> cases[] = {
      {"n", "x10", "range", 40, nullptr},
      {"nothing", "nope", "nope", 10, "no prop nothing"},
      {"n", "nope", "range", 10, "no converter nope"},
      {"n", "x10", "range", "ten", "converter failed: x10"},
      {"n", "x10", "nope", 10, "no validator nope"},
      {"n", "x10", "range", 90, "must be between 0 and 5"}};
  for (const auto& [path, converter, validator, input, message] : cases) {
    std::string error = "previous text";
    EXPECT_EQ(binding(path, converter, validator)->SetPropW(&model, input, error), !message);
    EXPECT_EQ(error, message ? message : "previous text") << path;
  }
  base::Value v;
  EXPECT_FALSE(binding("nothing", "x10")->GetPropW(&model, v));
  EXPECT_EQ(log.Text(), "");  // unlogged
  EXPECT_TRUE(binding("n", "x10")->GetPropW(&model, v));
  EXPECT_EQ(v.I64(), 40);
  EXPECT_FALSE(binding("$n + \"\"", "x10")->GetPropW(&model, v));  // text: the converter refuses
  EXPECT_TRUE(log.HasFailedCheck("GetPropW", "vm->Convert(this->converter, value, cvalue)"));
}
