#ifndef OVUI_MVVM_ICONVERTER_H_
#define OVUI_MVVM_ICONVERTER_H_

#include "base/ref_obj.h"
#include "base/value.h"

namespace vm {

// Converts between a view-model value and what a widget shows, registered on
// a view model by name. Returning false refuses the value: nothing is written.
class IConverter : public base::RefObj<IConverter>, public base::NoneClonable {
 public:
  // View model to widget.
  virtual bool Convert(const base::Value& from, base::Value& to) = 0;
  // Widget to view model.
  virtual bool ConvertBack(const base::Value& from, base::Value& to) = 0;
};

}  // namespace vm

#endif  // OVUI_MVVM_ICONVERTER_H_
