#include "mvvm/menu_data.h"

namespace vm {

MenuData::~MenuData() {
  Clear();
}

void MenuData::AddChild(MenuData* child) {
  if (child) this->childs.push_back(child);
}

void MenuData::Clear() {
  std::vector<MenuData*> old;
  old.swap(this->childs);
  for (MenuData* child : old)
    child->Release();
}

bool MenuData::Remove(unsigned int index) {
  if (index >= this->childs.size()) return false;
  MenuData* child = this->childs[index];
  this->childs.erase(this->childs.begin() + index);
  child->Release();
  return true;
}

void MenuData::Clone(const MenuData& other) {
  if (this == &other) return;
  // Copy everything before clearing: `other` may be one of our own children.
  std::vector<MenuData*> copies;
  for (const MenuData* child : other.childs) {
    auto* copy = new MenuData();
    copy->Clone(*child);
    copies.push_back(copy);
  }
  std::string text = other.text, command = other.command, command_arg = other.command_arg,
              icon = other.icon;
  const int separator = other.separator;
  Clear();
  this->text = std::move(text);
  this->command = std::move(command);
  this->command_arg = std::move(command_arg);
  this->icon = std::move(icon);
  this->separator = separator;
  this->childs = std::move(copies);
}

}  // namespace vm
