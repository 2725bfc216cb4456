#include "mvvm/view_model_tree.h"

namespace vm {

ViewModelTree::ViewModelTree(IModel* model) : ViewModelArray(model) {}

int ViewModelTree::GetType() const {
  return VIEW_MODEL_TREE;
}

ViewModelTree* ViewModelTree::GetRoot() {
  return const_cast<ViewModelTree*>(static_cast<const ViewModelTree*>(this)->GetRoot());
}

const ViewModelTree* ViewModelTree::GetRoot() const {
  const ViewModelTree* node = this;
  while (auto* up = dynamic_cast<const ViewModelTree*>(node->GetParent()))
    node = up;
  return node;
}

bool ViewModelTree::IsTreeRoot() const {
  return dynamic_cast<const ViewModelTree*>(GetParent()) == nullptr;
}

ViewModel* ViewModelTree::LentNode() const {
  if (!IsTreeRoot()) return nullptr;
  // A tree inside a plain list shares the list's selection, which may be this
  // very tree; lending to itself would never end.
  ViewModel* current = GetCurrentViewModel();
  return current == this ? nullptr : current;
}

bool ViewModelTree::HasProp(const std::string& name) const {
  ViewModel* current = LentNode();
  if (current && current->HasProp(name)) return true;
  return ViewModelArray::HasProp(name);
}

bool ViewModelTree::GetPropW(const std::string& name, base::Value& v) const {
  if (!GetParent()) {
    ViewModel* current = LentNode();
    if (current && current->GetPropW(name, v)) return true;
  }
  return ViewModelArray::GetPropW(name, v);
}

bool ViewModelTree::SetPropW(const std::string& name, const base::Value& v) {
  ViewModel* current = LentNode();
  if (!current || !current->SetPropW(name, v)) {
    if (!ViewModelArray::SetPropW(name, v)) return false;
  }
  // Equal old and new values: the root cannot know the old one, and its
  // listeners only need to hear which property to re-read.
  GetRoot()->EmitPropChange(name, v, v);
  return true;
}

bool ViewModelTree::DataChanged(ViewModelTree* node) {
  if (!node) return false;
  events::Event e("data-changed");
  e.SetParam("item", static_cast<void*>(node));
  Emit(&e);
  return true;
}

bool ViewModelTree::CanDrop(ViewModel* target, ViewModel* source) {
  (void)target;
  (void)source;
  return false;
}

bool ViewModelTree::OnDrop(ViewModel* target, ViewModel* source) {
  (void)target;
  (void)source;
  return false;
}

bool ViewModelTree::ExpandAll() {
  events::Event e("ExpandAll");
  Emit(&e);
  return true;
}

}  // namespace vm
