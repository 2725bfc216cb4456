#include "mvvm/view_model_array.h"

#include <algorithm>
#include <climits>

#include "base/log.h"

namespace vm {

ViewModelArray::ViewModelArray(IModel* model) : ViewModel(model) {
  InstallProp("_size_", &ViewModelArray::GetSizeProp, nullptr);
  InstallProp("_current_", &ViewModelArray::GetCurrentProp, &ViewModelArray::SetCurrentProp);
}

ViewModelArray::~ViewModelArray() {
  for (ViewModel* item : this->items)
    Orphan(item);
  ResetArray(this->items);
}

int ViewModelArray::GetType() const {
  return VIEW_MODEL_ARRAY;
}

IModel* ViewModelArray::GetModel() const {
  if (this->model) return this->model;
  ViewModel* current = GetCurrentViewModel();
  return current ? current->GetModel() : nullptr;
}

unsigned int ViewModelArray::Size() const {
  return static_cast<unsigned int>(GetItems().size());
}

bool ViewModelArray::Add(ViewModel* item, int index) {
  return AddWithoutSetCurrent(item, index, false);
}

bool ViewModelArray::AddWithoutSetCurrent(ViewModel* item, int index, bool keep_current) {
  const bool announce = !IsBlocked();
  // A child that will be refused is not announced: a view told "before-item-add"
  // would wait for an "item-add" that never comes.
  const bool acceptable =
      item && (!item->GetParent() || (item->GetParent() == this && IndexOf(item) < 0));
  if (announce && acceptable) {
    if (index < 0 || index > static_cast<int>(Size())) index = static_cast<int>(Size());
    EmitItemEvent("before-item-add", item, index);
  }
  if (!Add(GetItems(), item, index)) {
    OVUI_LOG_FAILED("Add(GetItems(), item, index)");
    return false;
  }
  if (announce) {
    EmitItemEvent("item-add", item, index);
    if (!keep_current) SetCurrent(static_cast<unsigned int>(index));
  }
  return true;
}

bool ViewModelArray::Add(std::vector<ViewModel*>& items, ViewModel* item, int& index) {
  OVUI_CHECK(item != NULL, false);
  ViewModel* parent = item->GetParent();
  OVUI_CHECK(parent == NULL || parent == this, false);
  // Held twice, the child would be released twice. Only a child parented
  // here can be in the list, so the search is rarely needed.
  OVUI_CHECK(parent == NULL || !Contains(items, item), false);
  if (index < 0 || index > static_cast<int>(items.size())) {
    items.push_back(item);
    index = static_cast<int>(items.size()) - 1;
  } else {
    items.insert(items.begin() + index, item);
  }
  if (!parent) item->SetParent(this);
  return true;
}

bool ViewModelArray::Remove(ViewModel* item) {
  const int index = IndexOf(item);
  if (index < 0) return true;  // not here: nothing to do
  return Remove(static_cast<unsigned int>(index));
}

bool ViewModelArray::Remove(unsigned int index) {
  if (index >= Size()) return false;
  std::vector<ViewModel*>& list = GetItems();
  ViewModel* item = list[index];
  const bool announce = !IsBlocked();
  if (announce) EmitItemEvent("before-item-remove", item, static_cast<int>(index));
  list.erase(list.begin() + index);
  if (announce) {
    EmitItemEvent("item-remove", item, static_cast<int>(index));
    EmitPropsChange();  // "_size_" changed
  }
  // Read while the child is alive: the selection may be it or lie inside it.
  ViewModel* const stale = SelectedAmong({item});
  item->SetParent(nullptr);
  item->Release();

  if (Size() > 0) {
    SetCurrent(std::min(GetCurrent(), Size() - 1));
  } else {
    // Every array keeps its own selection true, not only the root: a nested
    // array that is detached later becomes a root and reads it.
    this->current = 0;
    this->current_view_model = nullptr;
    if (auto* parent_array = dynamic_cast<ViewModelArray*>(GetParent())) {
      parent_array->SetCurrent(static_cast<unsigned int>(parent_array->IndexOf(this)));
    }
  }
  // Nothing above selected another child (a filter may hide this array from
  // its parent): never keep pointing at the released one.
  ViewModelArray* root = RootArray();
  if (stale && root->current_view_model == stale) {
    root->current_view_model = nullptr;
    root->current = 0;
  }
  return true;
}

bool ViewModelArray::Reset() {
  return ResetChildren(GetItems(), nullptr, true);
}

ViewModel* ViewModelArray::Get(unsigned int index) const {
  if (index == 0 && Size() == 0) return nullptr;
  OVUI_CHECK(index < this->Size(), nullptr);
  return GetItems()[index];
}

int ViewModelArray::IndexOf(const ViewModel* item) const {
  const std::vector<ViewModel*>& list = GetItems();
  auto it = std::find(list.begin(), list.end(), item);
  return it == list.end() ? -1 : static_cast<int>(it - list.begin());
}

unsigned int ViewModelArray::GetCurrent() const {
  return this->current;
}

bool ViewModelArray::SetCurrent(unsigned int index) {
  OVUI_CHECK(index < this->Size(), false);
  ViewModelArray* root = RootArray();
  this->current = index;
  this->current_view_model = Get(index);
  root->current = index;
  root->current_view_model = this->current_view_model;

  events::Event e("current-changed");
  e.SetParam("value", static_cast<long long>(index));
  EmitPropsChange();
  Emit(&e);
  if (root != this) {
    e.SetParam("value", static_cast<long long>(root->current));
    root->EmitPropsChange();
    root->Emit(&e);
  }
  return true;
}

bool ViewModelArray::BeginBatch() {
  return BlockEvents();
}

bool ViewModelArray::EndBatch() {
  UnblockEvents();
  Rebind("", "");
  // On an empty array this fails and logs, as any SetCurrent past the end.
  SetCurrent(Size() - 1);
  return true;
}

bool ViewModelArray::EnableAutoResizeHeight(bool flag) {
  this->auto_resize_height = flag;
  RootArray()->auto_resize_height = flag;
  events::Event e("resize-height");
  e.SetParam("resize", flag);
  EmitHereAndOnRoot(&e);
  return true;
}

bool ViewModelArray::UpdateViewModel() {
  events::Event e("update-model");
  EmitHereAndOnRoot(&e);
  return true;
}

std::vector<ViewModel*>& ViewModelArray::GetItems() {
  return this->items;
}

ViewModel* ViewModelArray::GetCurrentViewModel() const {
  return RootArray()->current_view_model;
}

void ViewModelArray::ResetArray(std::vector<ViewModel*>& items) {
  std::vector<ViewModel*> old;
  old.swap(items);
  for (ViewModel* item : old)
    item->Release();
}

bool ViewModelArray::ResetChildren(std::vector<ViewModel*>& owned,
                                   std::vector<ViewModel*>* borrowed, bool announce_before) {
  events::Event e("before-remove-all");
  e.SetParam("parent", static_cast<void*>(dynamic_cast<ViewModelArray*>(GetParent())));
  if (announce_before) Emit(&e);
  ForgetCurrentAmong(owned);
  if (borrowed) borrowed->clear();
  ResetArray(owned);
  this->current = 0;
  this->current_view_model = nullptr;
  e.SetType("remove-all");
  Emit(&e);
  return true;
}

void ViewModelArray::EmitHereAndOnRoot(events::Event* e) {
  Emit(e);
  ViewModelArray* root = RootArray();
  if (root != this) root->Emit(e);
}

void ViewModelArray::EmitItemEvent(const char* type, ViewModel* item, int index) {
  events::Event e(type);
  e.SetParam("item", static_cast<void*>(item));
  e.SetParam("parent", static_cast<void*>(this));
  e.SetParam("end", index);
  e.SetParam("start", index);
  EmitHereAndOnRoot(&e);
}

ViewModelArray* ViewModelArray::RootArray() const {
  auto* root = const_cast<ViewModelArray*>(this);
  while (auto* up = dynamic_cast<ViewModelArray*>(root->GetParent()))
    root = up;
  return root;
}

void ViewModelArray::ForgetSelected(ViewModel* item) {
  if (this->current_view_model == item) {
    this->current = 0;
    this->current_view_model = nullptr;
  }
  ForgetCurrentAmong({item});
}

bool ViewModelArray::Contains(const std::vector<ViewModel*>& items, const ViewModel* item) {
  return std::find(items.begin(), items.end(), item) != items.end();
}

void ViewModelArray::ForgetCurrentAmong(const std::vector<ViewModel*>& released) {
  if (!SelectedAmong(released)) return;
  ViewModelArray* root = RootArray();
  root->current_view_model = nullptr;
  root->current = 0;
}

ViewModel* ViewModelArray::SelectedAmong(const std::vector<ViewModel*>& among) const {
  ViewModel* const selected = RootArray()->current_view_model;
  for (ViewModel* v = selected; v && v != this; v = v->GetParent()) {
    if (std::find(among.begin(), among.end(), v) != among.end()) return selected;
  }
  return nullptr;
}

bool ViewModelArray::GetSizeProp(base::Value& v) const {
  v.I64(Size());
  return true;
}

bool ViewModelArray::GetCurrentProp(base::Value& v) const {
  v.I64(GetCurrent());
  return true;
}

bool ViewModelArray::SetCurrentProp(const base::Value& v) {
  const long long index = v.I64();
  // Refused whole: cut to 32 bits, 2^32 + 1 would select row 1.
  OVUI_CHECK(index >= 0 && index <= UINT_MAX, false);
  return SetCurrent(static_cast<unsigned int>(index));
}

}  // namespace vm
