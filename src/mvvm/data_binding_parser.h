#ifndef OVUI_MVVM_DATA_BINDING_PARSER_H_
#define OVUI_MVVM_DATA_BINDING_PARSER_H_

#include <string>
#include <vector>

#include "mvvm/data_binding.h"
#include "mvvm/rule_parser.h"

namespace vm {

// Reads and writes data-binding rules: `{Binding Path=Title, Mode=OneWay,
// Trigger=Changed, Converter=upper, Validator=range, Format=0.00}`.
//
// Keys match in any letter case. A leading value without a key is the path;
// `{Binding Path}` alone binds the property "path". Mode words: "TwoWay"
// (exact case), "OneWay" and "OneWayToModel" (any case); any other word,
// "Once" included, leaves the mode alone. Trigger words: "Changed",
// "Changing" (any case); any other word means explicit. Unknown keys go to
// `params` lower-cased. Values are taken as written, quotes included.
class DataBindingParser : public RuleParser {
 public:
  // Fills `binding`, which the parser does not own.
  explicit DataBindingParser(DataBinding* binding) : binding(binding) {}

  // A new binding (reference count 1, the caller's) from one rule; null, and
  // logged, when the text has 2 characters or fewer.
  static DataBinding* FromString(const std::string& str);
  // One rule per line (CR and LF both end lines, blank lines are skipped);
  // the bindings are appended to `bindings` in line order.
  static bool FromString(const std::string& str, std::vector<DataBinding*>& bindings);
  // The rule text, e.g. `{BindingPath=Title, Trigger=Changing, Mode=TwoWay}`.
  // No space follows the tag, so this text does not parse back to the same
  // path; `params` are not written.
  static std::string ToString(const DataBinding* binding);

  bool OnKeyValue(const std::string& key, const std::string& value) override;
  using RuleParser::OnKeyValue;

 protected:
  DataBinding* binding;
};

}  // namespace vm

#endif  // OVUI_MVVM_DATA_BINDING_PARSER_H_
