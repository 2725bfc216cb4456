#include "mvvm/command_binding.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

using vm::CommandBinding;
using vm::CommandBindingParser;

namespace {

std::string Reparse(const std::string& rule) {
  CommandBinding* b = CommandBindingParser::FromString(rule);
  EXPECT_EQ(b->RefCount(), 1);
  std::string text = CommandBindingParser::ToString(b);
  b->Release();
  return text;
}

}  // namespace

TEST(CommandBindingParserTest, ToStringTexts) {
  CommandBinding b;
  b.name = "save", b.args = "all", b.close_window = true, b.triggers = {"clicked", "", "pressed"};
  EXPECT_EQ(CommandBindingParser::ToString(&b),
            "{Command Name=save, Args=all, CloseWindow=True, Triggers=clicked||pressed}");
  b.close_window = false, b.update_model = true, b.triggers = {""};
  EXPECT_EQ(CommandBindingParser::ToString(&b),
            "{Command Name=save, Args=all, UpdateModel=True, Triggers=|}");
}

// Each rule is compared through its ToString text, pinned above. Flags take "true" in any case
// only; other keys are ignored; the first item is the name even when it looks like another key.
TEST(CommandBindingParserTest, KeysFlagsAndTriggers) {
  const std::pair<const char*, const char*> cases[] = {
      {"{Command save}", "{Command Name=save}"},
      {"{save}", "{Command Name=save}"},
      {"{Command}", "{Command Name=}"},
      {"{command NAME=x, Args=a=b  c, closewindow=TRUE, UPDATEMODEL=True}",
       "{Command Name=x, Args=a=b  c, CloseWindow=True, UpdateModel=True}"},
      {"{Command x, CloseWindow=yes, UpdateModel=1, Color=red}", "{Command Name=x}"},
      {"{Command x, CloseWindow=true, CloseWindow=}", "{Command Name=x}"},
      {"{Command Args=x}", "{Command Name=Args=x}"},
      // Every "|" ends a trigger, but an empty last piece is dropped; keys accumulate.
      {"{Command x, Trigger=a, Triggers=b|c}", "{Command Name=x, Triggers=a|b|c}"},
      {"{x, Triggers=a||b}", "{Command Name=x, Triggers=a||b}"},
      {"{x, Triggers=|a}", "{Command Name=x, Triggers=|a}"},
      {"{x, Triggers=a|}", "{Command Name=x, Triggers=a}"},
      {"{x, Triggers=||}", "{Command Name=x, Triggers=||}"},
      {"{x, Triggers=}", "{Command Name=x}"},
      // The texts ToString writes parse back to themselves, an empty last trigger included.
      {"{Command Name=x, Triggers=a||}", "{Command Name=x, Triggers=a||}"},
      {"{Command Name=open file, Args=a=b  c, CloseWindow=True, UpdateModel=True, Triggers=a||b}",
       "{Command Name=open file, Args=a=b  c, CloseWindow=True, UpdateModel=True, Triggers=a||b}"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Reparse(c.first), c.second) << c.first;
}
