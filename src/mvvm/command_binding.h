#ifndef OVUI_MVVM_COMMAND_BINDING_H_
#define OVUI_MVVM_COMMAND_BINDING_H_

#include <string>
#include <vector>

#include "base/ref_obj.h"
#include "mvvm/rule_parser.h"

namespace vm {

// A widget action tied to a named view-model command: the parsed form of a
// rule such as `{Command Name=save, Args=all, CloseWindow=true}`. A plain
// record; the binding context runs it.
class CommandBinding : public base::RefObj<CommandBinding>, public base::NoneClonable {
 public:
  CommandBinding() = default;

  // The command run with ExecuteCommand(name, args).
  std::string name;
  // Handed to the command unchanged.
  std::string args;
  // Widget events that fire the command, in the order written.
  std::vector<std::string> triggers;
  // Close the window holding the widget after the command.
  bool close_window = false;
  // Write the window's widget values into the view model before the command.
  bool update_model = false;
};

// Reads and writes command-binding rules. Keys match in any letter case;
// a leading value without a key is the name (`{save}`); CloseWindow and
// UpdateModel are set only by "true" in any case; Trigger and Triggers split
// their value at "|" and add to `triggers`; other keys are ignored.
class CommandBindingParser : public RuleParser {
 public:
  // Fills `binding`, which the parser does not own.
  explicit CommandBindingParser(CommandBinding* binding) : binding(binding) {}

  // A new binding (reference count 1, the caller's); any text gives one.
  static CommandBinding* FromString(const std::string& str);
  // The rule text, e.g. `{Command Name=save, CloseWindow=True}`; it parses
  // back to the same binding whenever its fields hold none of `,{}=|`, no
  // double quote and no leading or trailing space. False flags and empty
  // fields are left out; an empty last trigger is written with a closing "|".
  static std::string ToString(const CommandBinding* binding);

  bool OnKeyValue(const std::string& key, const std::string& value) override;
  using RuleParser::OnKeyValue;

 protected:
  CommandBinding* binding;
};

}  // namespace vm

#endif  // OVUI_MVVM_COMMAND_BINDING_H_
