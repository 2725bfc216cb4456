#ifndef OVUI_MVVM_ICOMMAND_H_
#define OVUI_MVVM_ICOMMAND_H_

#include <string>

#include "base/ref_obj.h"

namespace vm {

// An application command, registered on a view model by name and run by
// buttons, actions and menu entries. `args` is the rule's argument text.
class ICommand : public base::RefObj<ICommand>, public base::NoneClonable {
 public:
  // Whether the command may run now; widgets bound to it are enabled by this.
  virtual bool CanExecute(const std::string& args) {
    (void)args;
    return true;
  }
  virtual bool Execute(const std::string& args) = 0;
};

}  // namespace vm

#endif  // OVUI_MVVM_ICOMMAND_H_
