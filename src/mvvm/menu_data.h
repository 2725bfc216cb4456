#ifndef OVUI_MVVM_MENU_DATA_H_
#define OVUI_MVVM_MENU_DATA_H_

#include <string>
#include <vector>

#include "base/ref_obj.h"

namespace vm {

// One entry of a menu tree that a view model hands to the view for a context
// menu or a control menu. An entry with children is a submenu titled `text`;
// one without runs `command` with `command_arg`; a separator uses nothing else.
class MenuData : public base::NoneClonable, public base::RefObj<MenuData> {
 public:
  MenuData() = default;
  ~MenuData() override;

  const std::vector<MenuData*>& GetChilds() const { return this->childs; }
  // Appends `child`, adopting the caller's reference.
  void AddChild(MenuData* child);
  // Releases every child; the entry's own texts stay.
  void Clear();
  // Releases the child at `index`; false when out of range.
  bool Remove(unsigned int index);
  // Deep copy of `other` (a copy onto itself does nothing).
  void Clone(const MenuData& other);

  std::string text;
  std::string command;
  std::string command_arg;
  std::string icon;  // path or resource name; empty for none
  int separator = 0;

 private:
  std::vector<MenuData*> childs;
};

}  // namespace vm

#endif  // OVUI_MVVM_MENU_DATA_H_
