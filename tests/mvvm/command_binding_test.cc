#include "mvvm/command_binding.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using vm::CommandBinding;
using vm::CommandBindingParser;

namespace {

using Triggers = std::vector<std::string>;

struct Expected {
  std::string name;
  std::string args;
  bool close_window;
  bool update_model;
  Triggers triggers;
};

void ExpectBinding(const CommandBinding* b, const Expected& e, const std::string& what) {
  EXPECT_EQ(b->name, e.name) << what;
  EXPECT_EQ(b->args, e.args) << what;
  EXPECT_EQ(b->close_window, e.close_window) << what;
  EXPECT_EQ(b->update_model, e.update_model) << what;
  EXPECT_EQ(b->triggers, e.triggers) << what;
}

}  // namespace

TEST(CommandBindingParserTest, KeysAndFlags) {
  struct Case {
    const char* rule;
    Expected expected;
  };
  const Case cases[] = {
      {"{Command save}", {"save", "", false, false, {}}},
      {"{save}", {"save", "", false, false, {}}},
      {"{Command}", {"", "", false, false, {}}},
      {"", {"", "", false, false, {}}},
      {"{Command Name=save, Args=all, CloseWindow=true}", {"save", "all", true, false, {}}},
      {"{command NAME=x, closewindow=TRUE, UPDATEMODEL=True}", {"x", "", true, true, {}}},
      {"{Command x, CloseWindow=yes, UpdateModel=1}", {"x", "", false, false, {}}},
      {"{Command x, CloseWindow=}", {"x", "", false, false, {}}},
      {"{Command x, CloseWindow=true, CloseWindow=no}", {"x", "", false, false, {}}},
      // The first item is the name even when it looks like another key.
      {"{Command Args=x, Name=y}", {"y", "", false, false, {}}},
      {"{Command Args=x}", {"Args=x", "", false, false, {}}},
      {"{Command x, Args=a=b  c}", {"x", "a=b  c", false, false, {}}},
      {"{Command x, Color=red}", {"x", "", false, false, {}}},
      // A trailing bare key is flushed by "}" with an empty value.
      {"{Command x, Args=a, Name}", {"", "a", false, false, {}}},
      {"{Command x, Trigger=a, Triggers=b|c}", {"x", "", false, false, {"a", "b", "c"}}},
  };
  for (const Case& c : cases) {
    CommandBinding* b = CommandBindingParser::FromString(c.rule);
    ASSERT_NE(b, nullptr) << c.rule;
    ExpectBinding(b, c.expected, c.rule);
    EXPECT_EQ(b->RefCount(), 1);
    b->Release();
  }
}

TEST(CommandBindingParserTest, TriggersSplitAsymmetrically) {
  struct Case {
    const char* value;
    Triggers triggers;
  };
  const Case cases[] = {
      {"a|b", {"a", "b"}}, {"a||b", {"a", "", "b"}}, {"|a", {"", "a"}}, {"a|", {"a"}},
      {"|", {""}},         {"||", {"", ""}},         {"", {}},          {"clicked", {"clicked"}},
  };
  for (const Case& c : cases) {
    CommandBinding* b =
        CommandBindingParser::FromString(std::string("{Command x, Triggers=") + c.value + "}");
    EXPECT_EQ(b->triggers, c.triggers) << c.value;
    b->Release();
  }
}

TEST(CommandBindingParserTest, ToStringTexts) {
  CommandBinding b;
  EXPECT_EQ(CommandBindingParser::ToString(&b), "{Command Name=}");
  b.name = "save";
  b.close_window = true;
  EXPECT_EQ(CommandBindingParser::ToString(&b), "{Command Name=save, CloseWindow=True}");
  b.args = "all";
  b.update_model = true;
  b.triggers = {"clicked", "", "pressed"};
  EXPECT_EQ(CommandBindingParser::ToString(&b),
            "{Command Name=save, Args=all, CloseWindow=True, UpdateModel=True, "
            "Triggers=clicked||pressed}");
  b.close_window = false;
  b.triggers = {"clicked"};
  EXPECT_EQ(CommandBindingParser::ToString(&b),
            "{Command Name=save, Args=all, UpdateModel=True, Triggers=clicked}");
}

TEST(CommandBindingParserTest, ToStringParsesBack) {
  const Expected bindings[] = {
      {"save", "", false, false, {}},
      {"save", "all", true, false, {}},
      {"open file", "a=b  c", false, true, {"clicked"}},
      {"x", "1", true, true, {"a", "", "b"}},
  };
  for (const Expected& e : bindings) {
    CommandBinding b;
    b.name = e.name;
    b.args = e.args;
    b.close_window = e.close_window;
    b.update_model = e.update_model;
    b.triggers = e.triggers;
    const std::string text = CommandBindingParser::ToString(&b);
    CommandBinding* back = CommandBindingParser::FromString(text);
    ExpectBinding(back, e, text);
    back->Release();
  }
}
