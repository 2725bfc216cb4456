#include "mvvm/view_model_tree_ext.h"

#include <algorithm>

#include "base/log.h"

namespace vm {

namespace {

void Erase(std::vector<ViewModel*>& list, ViewModel* item) {
  list.erase(std::remove(list.begin(), list.end(), item), list.end());
}

}  // namespace

ViewModelTreeExt::ViewModelTreeExt(IModel* model) : ViewModelTree(model) {}

ViewModelTreeExt::~ViewModelTreeExt() {
  // The visible list only borrows: the base destructor must find it empty.
  this->items.clear();
  for (ViewModel* item : this->all_items)
    Orphan(item);
  ResetArray(this->all_items);
}

bool ViewModelTreeExt::Add(ViewModel* item, int index) {
  return AddWithoutSetCurrent(item, index, false);
}

bool ViewModelTreeExt::AddWithoutSetCurrent(ViewModel* item, int index, bool keep_current) {
  OVUI_CHECK(item != NULL, false);
  ViewModelTreeExt* root = RootExt();
  OVUI_CHECK(root, false);
  // A hidden child is in the full list only, where the inherited add does
  // not look.
  OVUI_CHECK(item->GetParent() != this || !Contains(this->all_items, item), false);
  if (root->filter_rule.empty()) {
    return ViewModelTree::AddWithoutSetCurrent(item, index, keep_current);
  }
  // A whole subtree may come in: filtering it also rebuilds its visible lists.
  // A child of another tree is left alone; the insertion below refuses it.
  const bool ours = !item->GetParent() || item->GetParent() == this;
  const bool shown = ours && root->DoFilter(item, root->filter_rule, false);
  if (shown && !ViewModelTree::AddWithoutSetCurrent(item, index, keep_current)) {
    OVUI_LOG_FAILED("ViewModelTree::AddWithoutSetCurrent(item, index, without)");
    return false;
  }
  if (!ViewModelArray::Add(this->all_items, item, index)) return false;
  if (shown) ShowInAncestors();
  return true;
}

bool ViewModelTreeExt::Remove(ViewModel* item) {
  OVUI_CHECK(item != NULL, false);
  if (Filtered() && IndexOf(item) < 0) {
    if (!Contains(this->all_items, item)) return true;
    Erase(this->all_items, item);
    // The caller takes the item back; no selection may keep naming it.
    ForgetSelected(item);
    return true;
  }
  return ViewModelTree::Remove(item);
}

bool ViewModelTreeExt::Remove(unsigned int index) {
  if (!Filtered() || index >= Size()) return ViewModelTree::Remove(index);
  // The base releases the child; drop it from the full list while the pointer
  // is still good.
  Erase(this->all_items, GetItems()[index]);
  if (!ViewModelTree::Remove(index)) return false;
  HideEmptyAncestors();
  return true;
}

bool ViewModelTreeExt::Reset() {
  // Unlike a list, a tree node sends no "before-remove-all".
  if (!ResetChildren(this->all_items, &this->items, false)) return false;
  if (Filtered()) HideEmptyAncestors();
  return true;
}

std::vector<ViewModel*>& ViewModelTreeExt::GetItems() {
  return Filtered() ? this->items : this->all_items;
}

bool ViewModelTreeExt::FilterOne(ViewModel* node, const std::string& rule) {
  (void)node;
  (void)rule;
  return true;
}

std::vector<ViewModel*>& ViewModelTreeExt::GetAllItems() {
  return this->all_items;
}

bool ViewModelTreeExt::Filter(const std::string& rule) {
  if (rule == this->filter_rule) return true;
  events::Event before("before-filtered");
  Emit(&before);
  // Typing further characters can only narrow the result.
  const std::string& old = this->filter_rule;
  const bool incremental =
      !old.empty() && rule.size() > old.size() && rule.compare(0, old.size(), old) == 0;
  DoFilter(this, rule, incremental);
  this->filter_rule = rule;
  events::Event after("filtered");
  return Emit(&after) || !this->emitter;
}

bool ViewModelTreeExt::DoFilter(ViewModel* node, const std::string& rule, bool incremental) {
  bool keep = rule.empty() || FilterOne(node, rule);
  auto* tree = dynamic_cast<ViewModelTreeExt*>(node);
  if (!tree) return keep;
  std::vector<ViewModel*> visible_before;
  visible_before.swap(tree->items);
  const std::vector<ViewModel*>& source = incremental ? visible_before : tree->all_items;
  for (ViewModel* child : source) {
    if (DoFilter(child, rule, incremental)) {
      tree->items.push_back(child);
      keep = true;
    }
  }
  return keep;
}

void ViewModelTreeExt::ShowInAncestors() {
  ViewModelTreeExt* node = this;
  while (!node->IsTreeRoot()) {
    auto* parent = dynamic_cast<ViewModelTreeExt*>(node->GetParent());
    if (!parent || Contains(parent->items, node)) return;  // shown, and so is all above
    parent->ViewModelTree::AddWithoutSetCurrent(node, parent->VisiblePosition(node), true);
    node = parent;
  }
}

void ViewModelTreeExt::HideEmptyAncestors() {
  ViewModelTreeExt* root = RootExt();
  ViewModelTreeExt* node = this;
  while (!node->IsTreeRoot() && node->items.empty() && !root->FilterOne(node, root->filter_rule)) {
    auto* parent = dynamic_cast<ViewModelTreeExt*>(node->GetParent());
    const int at = parent ? parent->IndexOf(node) : -1;
    if (at < 0) return;
    parent->HideChild(static_cast<unsigned int>(at));
    node = parent;
  }
}

int ViewModelTreeExt::VisiblePosition(const ViewModel* child) const {
  // The visible list keeps full-list order: count the shown children that
  // come before `child` in one walk over both.
  size_t shown = 0;
  for (const ViewModel* each : this->all_items) {
    if (each == child) break;
    if (shown < this->items.size() && this->items[shown] == each) ++shown;
  }
  return static_cast<int>(shown);
}

void ViewModelTreeExt::HideChild(unsigned int index) {
  ViewModel* child = this->items[index];
  const bool announce = !IsBlocked();
  if (announce) EmitItemEvent("before-item-remove", child, static_cast<int>(index));
  this->items.erase(this->items.begin() + index);
  if (announce) {
    EmitItemEvent("item-remove", child, static_cast<int>(index));
    EmitPropsChange();  // "_size_" changed
  }
}

ViewModelTreeExt* ViewModelTreeExt::RootExt() const {
  return const_cast<ViewModelTreeExt*>(dynamic_cast<const ViewModelTreeExt*>(GetRoot()));
}

bool ViewModelTreeExt::Filtered() const {
  const ViewModelTreeExt* root = RootExt();
  return root && !root->filter_rule.empty();
}

}  // namespace vm
