#include "mvvm/view_model_array_ext.h"

#include <algorithm>
#include <typeinfo>

#include "base/log.h"

namespace vm {

namespace {
const char kFiltered[] = "filtered";
const char kSorted[] = "sorted";
}  // namespace

ViewModelArrayExt::ViewModelArrayExt(IModel* model) : ViewModelArray(model) {}

ViewModelArrayExt::~ViewModelArrayExt() {
  // The base destructor releases `items`, whose entries are only borrowed
  // here: empty it so that each child is released once, from the full list.
  this->items.clear();
  for (ViewModel* item : this->all_items)
    Orphan(item);
  ResetArray(this->all_items);
}

bool ViewModelArrayExt::Add(ViewModel* item, int index) {
  return AddWithoutSetCurrent(item, index, false);
}

bool ViewModelArrayExt::AddWithoutSetCurrent(ViewModel* item, int index, bool without) {
  OVUI_CHECK(item != NULL, false);
  // Refused as by the plain array: a child taken over from another array
  // would have two owners of its one reference.
  ViewModel* parent = item->GetParent();
  OVUI_CHECK(parent == NULL || parent == this, false);
  // A hidden child is in the full list only, where the inherited add does
  // not look.
  OVUI_CHECK(parent == NULL || !Contains(this->all_items, item), false);

  // The inherited add inserts into GetItems(): the full list when no rule is
  // set, else the visible list, next to which the full list is kept here.
  const bool ruled = HasRule();
  const bool shown = this->filter_rule.empty() || FilterOne(item, this->filter_rule);
  if (shown && !ViewModelArray::AddWithoutSetCurrent(item, index, without)) {
    OVUI_LOG_FAILED("ViewModelArray::AddWithoutSetCurrent(item, index, without)");
    return false;
  }
  // A child hidden by the filter never reaches the inherited add that
  // parents the others.
  item->SetParent(this);
  if (!ruled) return true;
  this->all_items.push_back(item);
  // No incremental insertion: the whole list is sorted again, and "sorted"
  // tells views that the position in "item-add" was provisional.
  if (!this->sort_rule.empty()) Sort(this->sort_rule);
  return true;
}

bool ViewModelArrayExt::Remove(ViewModel* item) {
  OVUI_CHECK(item != NULL, false);
  // A visible child leaves the full list in Remove(index), released. A hidden
  // one is not found by the inherited removal and is only dropped here.
  const bool hidden = HasRule() && IndexOf(item) < 0;
  if (!ViewModelArray::Remove(item)) return false;
  if (hidden) {
    auto it = std::find(this->all_items.begin(), this->all_items.end(), item);
    if (it == this->all_items.end()) return true;
    this->all_items.erase(it);
    // The caller takes the child back; no selection may keep naming it.
    ForgetSelected(item);
  }
  return true;
}

bool ViewModelArrayExt::Remove(unsigned int index) {
  if (!HasRule() || index >= Size()) return ViewModelArray::Remove(index);
  // The inherited removal releases the child, so its entry in the full list
  // has to go too; otherwise it would be released a second time later.
  ViewModel* item = this->items[index];
  auto it = std::find(this->all_items.begin(), this->all_items.end(), item);
  if (it != this->all_items.end()) this->all_items.erase(it);
  return ViewModelArray::Remove(index);
}

bool ViewModelArrayExt::Reset() {
  if (!HasRule()) return ViewModelArray::Reset();
  return ResetChildren(this->all_items, &this->items, true);
}

std::vector<ViewModel*>& ViewModelArrayExt::GetItems() {
  return HasRule() ? this->items : GetAllItems();
}

bool ViewModelArrayExt::FilterOne(ViewModel*, const std::string&) {
  return true;
}

int ViewModelArrayExt::Compare(Model* a, Model* b, const std::string& key) {
  base::Value va, vb;
  a->GetPropW(key, va);
  b->GetPropW(key, vb);
  return va.Cmp(vb);
}

std::vector<ViewModel*>& ViewModelArrayExt::GetAllItems() {
  return this->all_items;
}

bool ViewModelArrayExt::Filter(const std::string& rule) {
  if (this->all_items.empty()) {
    this->filter_rule = rule;  // takes effect with the next add
    return false;
  }
  this->items.clear();
  for (ViewModel* child : this->all_items)
    if (FilterOne(child, rule)) this->items.push_back(child);
  this->filter_rule = rule;
  // Without rules the full list is shown and the visible one is unused; do
  // not keep borrowed pointers in it that a later removal would leave stale.
  if (!HasRule()) this->items.clear();

  if (Heard()) {
    events::Event filtered(kFiltered);
    Emit(&filtered);
  }

  // A current index still in range is kept, even if it now names another
  // child; only one past the end is moved.
  if (GetCurrent() >= Size()) {
    if (Size() > 0) {
      SetCurrent(0);
    } else {
      this->current = 0;
      this->current_view_model = nullptr;
    }
  }
  return true;
}

bool ViewModelArrayExt::UsesDefaultCompare() const {
  return this->compare_is_own || typeid(*this) == typeid(ViewModelArrayExt);
}

bool ViewModelArrayExt::Sort(const std::string& args) {
  OVUI_CHECK(args.size() > 2, false);
  const bool descending = args[0] == '0';
  const std::string key = args.substr(2);

  // The complement makes equal keys compare as "goes before" when
  // descending, so equal children are not kept in their previous order
  // there; views depend on the resulting order, keep the predicate as is.
  auto goes_before = [descending](int r) { return (descending ? ~r : r) < 0; };
  if (UsesDefaultCompare()) {
    // Compare would read both keys on every comparison, chasing two children
    // through memory each time; read each key once instead and sort the keys.
    // The order is the same: Compare is exactly this Cmp of the two values.
    std::vector<base::Value> keys(this->all_items.size());
    std::vector<std::pair<const base::Value*, ViewModel*>> keyed;
    keyed.reserve(keys.size());
    for (size_t i = 0; i < keys.size(); ++i) {
      this->all_items[i]->GetPropW(key, keys[i]);
      keyed.emplace_back(&keys[i], this->all_items[i]);
    }
    std::stable_sort(keyed.begin(), keyed.end(), [&](const auto& a, const auto& b) {
      return goes_before(a.first->Cmp(*b.first));
    });
    for (size_t i = 0; i < keyed.size(); ++i)
      this->all_items[i] = keyed[i].second;
  } else {
    std::stable_sort(this->all_items.begin(), this->all_items.end(),
                     [&](ViewModel* a, ViewModel* b) { return goes_before(Compare(a, b, key)); });
  }
  this->items = this->all_items;
  this->sort_rule = args;

  // "sorted" goes out only when somebody can hear it. Without listeners, or
  // inside a batch (whose end asks the view to rebind anyway), there is
  // nobody to tell, and that must not stop the filter from being re-applied
  // below: the visible list now holds every child. Only a delivery that
  // fails while heard (an Emit override refusing it) ends the sort here.
  if (Heard()) {
    events::Event sorted(kSorted);
    events::Event* event = &sorted;  // not the reusable change event: no stale parameters
    OVUI_CHECK(this->Emit(event), false);
  }

  if (!this->filter_rule.empty()) Filter(this->filter_rule);
  return true;
}

}  // namespace vm
