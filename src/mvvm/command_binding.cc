#include "mvvm/command_binding.h"

#include "base/log.h"
#include "base/str_utils.h"

namespace vm {

namespace {

// Every "|" ends a trigger, even an empty one; only the text after the last
// "|" is dropped when empty. So "a||b" keeps its empty middle but "a|" gives
// just "a".
void AppendTriggers(const std::string& text, std::vector<std::string>& triggers) {
  std::string piece;
  for (char c : text) {
    if (c == '|') {
      triggers.push_back(piece);
      piece.clear();
    } else {
      piece += c;
    }
  }
  if (!piece.empty()) triggers.push_back(piece);
}

}  // namespace

CommandBinding* CommandBindingParser::FromString(const std::string& str) {
  auto* binding = new CommandBinding();
  CommandBindingParser parser(binding);
  parser.Parse(str, "Command", "Name");
  return binding;
}

std::string CommandBindingParser::ToString(const CommandBinding* binding) {
  OVUI_CHECK(binding != NULL, std::string());
  std::string text = "{Command Name=" + binding->name;
  if (!binding->args.empty()) text += ", Args=" + binding->args;
  if (binding->close_window) text += ", CloseWindow=True";
  if (binding->update_model) text += ", UpdateModel=True";
  if (!binding->triggers.empty()) {
    text += ", Triggers=";
    for (size_t i = 0; i < binding->triggers.size(); ++i) {
      if (i > 0) text += "|";
      text += binding->triggers[i];
    }
    // The split drops an empty last piece, so an empty last trigger needs a
    // closing "|" to survive the round trip.
    if (binding->triggers.back().empty()) text += "|";
  }
  text += "}";
  return text;
}

bool CommandBindingParser::OnKeyValue(const std::string& key, const std::string& value) {
  OVUI_CHECK(this->binding != NULL, false);
  const std::string k = base::StrUtils::ToLower(key);
  if (IEqual(k, "Name")) {
    this->binding->name = value;
  } else if (IEqual(k, "Args")) {
    this->binding->args = value;
  } else if (IEqual(k, "CloseWindow")) {
    this->binding->close_window = IsTrue(value);
  } else if (IEqual(k, "UpdateModel")) {
    this->binding->update_model = IsTrue(value);
  } else if (IEqual(k, "Triggers") || IEqual(k, "Trigger")) {
    AppendTriggers(value, this->binding->triggers);
  }
  return true;
}

}  // namespace vm
