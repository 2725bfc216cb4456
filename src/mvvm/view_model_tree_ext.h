#ifndef OVUI_MVVM_VIEW_MODEL_TREE_EXT_H_
#define OVUI_MVVM_VIEW_MODEL_TREE_EXT_H_

#include <string>
#include <vector>

#include "mvvm/view_model_tree.h"

namespace vm {

// A tree node that can be filtered together with the whole tree: a node stays
// visible when it or any of its descendants passes the filter.
//
// Each node keeps all its children (GetAllItems(), which owns them) and the
// visible ones (borrowed, in the same order). Adds and removes under a filter
// keep the rule for the ancestors: an ancestor that gains its first visible
// child is inserted into its parent's visible list (after the child's own
// "item-add"), and one left with none that does not pass itself is taken
// out with "before-item-remove"/"item-remove". Filtering is switched on and off
// at the tree root: while the root's rule is not empty, every node presents
// its visible children through GetItems(), so sizes, positions and row events
// are those of the visible tree. Subclasses define the rule language by
// overriding FilterOne.
//
// Events, on the node Filter is called on, only when it has listeners:
//   "before-filtered", "filtered"   no parameters: rebuild every row
class ViewModelTreeExt : public ViewModelTree {
 public:
  explicit ViewModelTreeExt(IModel* model = nullptr);
  ~ViewModelTreeExt() override;

  using ViewModelArray::GetItems;
  using ViewModelArray::Remove;

  // Adds while the tree is filtered show the item only when it (or one of its
  // descendants) passes; an item that does not is added silently.
  bool Add(ViewModel* item, int index = -1) override;
  bool AddWithoutSetCurrent(ViewModel* item, int index, bool keep_current) override;
  // An item hidden by the filter is only dropped from this node: no events,
  // no release, and it keeps its parent. Its reference goes back to the
  // caller, who must release it; a selection naming it is cleared. Clear the
  // filter first to remove hidden items the ordinary way.
  bool Remove(ViewModel* item) override;
  bool Remove(unsigned int index) override;
  // Releases every child, shown or not. Sends "remove-all" only (no
  // "before-remove-all").
  bool Reset() override;
  std::vector<ViewModel*>& GetItems() override;

  // Whether `node` itself passes `rule`; this class lets everything pass.
  virtual bool FilterOne(ViewModel* node, const std::string& rule);
  virtual std::vector<ViewModel*>& GetAllItems();

  // Filters the tree below this node (call it on the tree root). A rule that
  // extends the previous one searches only what that one left visible; the
  // rule in force again does nothing. An empty rule shows everything.
  bool Filter(const std::string& rule);
  const std::string& GetFilterRule() const { return this->filter_rule; }

 protected:
  using ViewModelArray::Add;

  // Rebuilds the visible lists below `node` and answers whether `node` stays
  // visible; `incremental` searches only the children visible so far.
  bool DoFilter(ViewModel* node, const std::string& rule, bool incremental);

  std::string filter_rule;
  std::vector<ViewModel*> all_items;

 private:
  // A node stays visible while it passes or any descendant does; adds and
  // removes under a filter keep that true up to the tree root. Shows every
  // hidden ancestor of this node, innermost first, with the usual item events.
  void ShowInAncestors();
  // Hides this node and then each ancestor that neither passes nor has a
  // visible child left.
  void HideEmptyAncestors();
  // Where `child` of the full list belongs in the visible list.
  int VisiblePosition(const ViewModel* child) const;
  // Takes the visible child at `index` out of view, unreleased, with the
  // item events of a removal.
  void HideChild(unsigned int index);
  // The tree root as an extended tree, or null when it is a plain one.
  ViewModelTreeExt* RootExt() const;
  // Whether the tree root has a filter in force.
  bool Filtered() const;
};

}  // namespace vm

#endif  // OVUI_MVVM_VIEW_MODEL_TREE_EXT_H_
