#ifndef OVUI_MVVM_DATA_BINDING_H_
#define OVUI_MVVM_DATA_BINDING_H_

#include <map>
#include <string>

#include "base/ref_obj.h"
#include "base/value.h"

namespace vm {

class ViewModel;

// One widget property tied to one view-model property: the parsed form of a
// rule such as `{Binding Path=Title, Mode=OneWay, Converter=upper}` (see
// DataBindingParser). It reads the bound value for display and writes a value
// the user entered back; when to do either is up to the binding context.
class DataBinding : public base::RefObj<DataBinding>, public base::NoneClonable {
 public:
  // `mode` codes; the rule-text words are "TwoWay", "OneWay", "OneWayToModel".
  enum Mode {
    MODE_TWO_WAY = 0,           // both directions
    MODE_ONE_WAY = 1,           // view model to widget only
    MODE_ONE_WAY_TO_MODEL = 2,  // widget to view model only
    MODE_ONCE = 3,              // view model to widget when bound; set in code only
  };
  // `trigger` codes: when the widget's value is written back.
  enum Trigger {
    TRIGGER_CHANGED = 0,   // once an edit is finished
    TRIGGER_CHANGING = 1,  // while the user edits
    TRIGGER_EXPLICIT = 2,  // only when the binding context updates the model on request
  };

  DataBinding() = default;

  // Makes the binding read-only for widgets that only display. A MODE_ONCE
  // binding stays MODE_ONCE.
  void AsOneWay();

  // Reads `path` through EvalProp (so an expression may be shown) and applies
  // the converter. False when the path cannot be read, or (logged) when the
  // converter is unknown or fails.
  bool GetPropW(ViewModel* vm, base::Value& value) const;

  // Converts `value` back, validates the converted value, then writes it to
  // `path`. Nothing is written unless every step succeeds; on failure `error`
  // says why ("no prop <path>", "no converter <name>", "converter failed:
  // <name>", "no validator <name>", or the validator's own message).
  bool SetPropW(ViewModel* vm, const base::Value& value, std::string& error) const;

  // Keys of the rule that are not known here, lower-cased, for the widget side.
  std::map<std::string, std::string> params;
  int mode = MODE_TWO_WAY;
  // A view-model property name, or an expression for read-only bindings.
  std::string path;
  // Names registered on the view model; empty means none.
  std::string converter;
  std::string validator;
  int trigger = TRIGGER_CHANGING;
};

}  // namespace vm

#endif  // OVUI_MVVM_DATA_BINDING_H_
