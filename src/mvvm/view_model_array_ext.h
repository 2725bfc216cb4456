#ifndef OVUI_MVVM_VIEW_MODEL_ARRAY_EXT_H_
#define OVUI_MVVM_VIEW_MODEL_ARRAY_EXT_H_

#include <string>
#include <vector>

#include "mvvm/view_model_array.h"

namespace vm {

// A list view model that can filter and sort its children.
//
// It keeps two lists: the full list, which owns one reference per child, and
// the visible list (the full list filtered by the filter rule and ordered by
// the sort rule), which borrows them. Size, current position, row events and
// what the item models show all work on the visible list; without rules the
// array behaves exactly as a plain ViewModelArray.
//
// Filter rules are opaque: their text is handed to FilterOne, which a
// subclass overrides. A sort rule is "<direction><separator><key>": "0" as
// the direction sorts descending, anything else ascending; the key names the
// child property that Compare orders by ("1:name", "0 date").
//
// Rules stay in force until replaced, also across Reset: every later add is
// filtered and re-sorts the whole list.
//
// Events on this array only (not repeated on the root of a nest), with no
// parameters, sent only when someone listens and events are not blocked:
//   "filtered"  after Filter
//   "sorted"    after Sort
// Consumers rebuild every row on either.
class ViewModelArrayExt : public ViewModelArray {
 public:
  explicit ViewModelArrayExt(IModel* model = nullptr);
  ~ViewModelArrayExt() override;

  using ViewModelArray::GetItems;
  using ViewModelArray::Remove;

  bool Add(ViewModel* item, int index = -1) override;
  // With a filter rule, a child that does not pass is kept in the full list
  // but not shown: no event, and the current position stays. `without`:
  // keep the current position.
  bool AddWithoutSetCurrent(ViewModel* item, int index, bool without) override;
  // A child hidden by the filter is only dropped from the full list: no
  // events, no release, and it keeps its parent. Its reference goes back to
  // the caller, who must release it; a selection naming it is cleared.
  // Clear the filter first to remove hidden children the ordinary way.
  bool Remove(ViewModel* item) override;
  bool Remove(unsigned int index) override;
  // Releases every child; the rules are kept.
  bool Reset() override;
  // The full list when no rule is set, else the visible list.
  std::vector<ViewModel*>& GetItems() override;

  // Whether `item` passes `rule`; every child passes here.
  virtual bool FilterOne(ViewModel* item, const std::string& rule);
  // Three-way comparison of the `key` property of two children (a child
  // without it compares as an empty value).
  virtual int Compare(Model* a, Model* b, const std::string& key);
  // Every child, shown or not, in the order of the last sort.
  virtual std::vector<ViewModel*>& GetAllItems();

  // Rebuilds the visible list from the children that pass `rule`. A current
  // index still in range is kept as an index, even when it now names another
  // child; one past the end moves to 0 (or, with nothing visible, is cleared
  // without "current-changed"). On an empty array the rule is only stored
  // (false).
  bool Filter(const std::string& rule);
  // Sorts by the rule `args` (see above) and re-applies the filter. Refused
  // when shorter than three characters. Descending order does not keep
  // children with equal keys in their previous order.
  bool Sort(const std::string& args);

  const std::string& GetSortRule() const { return this->sort_rule; }
  const std::string& GetFilterRule() const { return this->filter_rule; }

 protected:
  // True when Compare is known to be this class's own, so that Sort may
  // read every key once instead of twice per comparison: for a plain
  // ViewModelArrayExt, or when a subclass set `compare_is_own`.
  bool UsesDefaultCompare() const;

  using ViewModelArray::Add;

  bool HasRule() const { return !this->sort_rule.empty() || !this->filter_rule.empty(); }
  // Whether an event sent now would reach anybody.
  bool Heard() const { return this->emitter && !IsBlocked(); }

  std::string sort_rule;
  std::string filter_rule;
  std::vector<ViewModel*> all_items;
  // A subclass that keeps this class's Compare may set this to let Sort read
  // each key once. A subclass that overrides Compare leaves it alone: its
  // Compare is then asked for every comparison.
  bool compare_is_own = false;
};

}  // namespace vm

#endif  // OVUI_MVVM_VIEW_MODEL_ARRAY_EXT_H_
