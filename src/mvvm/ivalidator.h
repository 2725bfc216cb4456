#ifndef OVUI_MVVM_IVALIDATOR_H_
#define OVUI_MVVM_IVALIDATOR_H_

#include <string>

#include "base/ref_obj.h"
#include "base/value.h"

namespace vm {

// Checks a value from a widget before it is written, registered on a view
// model by name. `valid` keeps the result of the last check, so that a view
// model can tell whether any of its validators currently refuses a value.
class IValidator : public base::RefObj<IValidator>, public base::NoneClonable {
 public:
  // False refuses `v`; `msg` then says why, for the user.
  virtual bool IsValid(const base::Value& v, std::string& msg) = 0;

  bool valid = true;
};

}  // namespace vm

#endif  // OVUI_MVVM_IVALIDATOR_H_
