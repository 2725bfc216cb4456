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
  if (root->filter_rule.empty()) {
    return ViewModelTree::AddWithoutSetCurrent(item, index, keep_current);
  }
  // A whole subtree may come in: filtering it also rebuilds its visible lists.
  // A child of another tree is left alone; the insertion below refuses it.
  const bool ours = !item->GetParent() || item->GetParent() == this;
  if (ours && root->DoFilter(item, root->filter_rule, false) &&
      !ViewModelTree::AddWithoutSetCurrent(item, index, keep_current)) {
    OVUI_LOG_FAILED("ViewModelTree::AddWithoutSetCurrent(item, index, without)");
    return false;
  }
  return ViewModelArray::Add(this->all_items, item, index);
}

bool ViewModelTreeExt::Remove(ViewModel* item) {
  OVUI_CHECK(item != NULL, false);
  if (Filtered() && IndexOf(item) < 0) {
    Erase(this->all_items, item);
    return true;
  }
  return ViewModelTree::Remove(item);
}

bool ViewModelTreeExt::Remove(unsigned int index) {
  // The base releases the child; drop it from the full list while the pointer
  // is still good.
  if (Filtered() && index < Size()) Erase(this->all_items, GetItems()[index]);
  return ViewModelTree::Remove(index);
}

bool ViewModelTreeExt::Reset() {
  // Unlike a list, a tree node sends no "before-remove-all".
  return ResetChildren(this->all_items, &this->items, false);
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

ViewModelTreeExt* ViewModelTreeExt::RootExt() const {
  return const_cast<ViewModelTreeExt*>(dynamic_cast<const ViewModelTreeExt*>(GetRoot()));
}

bool ViewModelTreeExt::Filtered() const {
  const ViewModelTreeExt* root = RootExt();
  return root && !root->filter_rule.empty();
}

}  // namespace vm
