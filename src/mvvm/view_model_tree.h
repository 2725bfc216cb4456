#ifndef OVUI_MVVM_VIEW_MODEL_TREE_H_
#define OVUI_MVVM_VIEW_MODEL_TREE_H_

#include <string>

#include "mvvm/view_model_array.h"

namespace vm {

// A node of a tree of view models: a list whose children may be trees too.
//
// The tree root (the topmost node reached through tree parents only; a tree
// under a plain list is its own root) stands for the whole tree. It lends the
// properties of the node selected last anywhere below it
// (GetCurrentViewModel()), so a detail form bound to the tree shows the
// selection; the selected node's built-in "_size_" and "_current_" shadow the
// root's own. Every property write on a node is announced on the tree root as
// a "prop-changed" whose "old" and "value" are both the written value, so one
// listener there refreshes whatever shows that property.
//
// Events, on the node the operation is called on, only when it has listeners:
//   "ExpandAll"      no parameters: expand every node in the views
//   "data-changed"   "item": the ViewModelTree* whose data changed
// All events of ViewModelArray apply to every node as well.
class ViewModelTree : public ViewModelArray {
 public:
  explicit ViewModelTree(IModel* model = nullptr);

  int GetType() const override;
  // The tree root: climbs only while the parent is a tree.
  ViewModelTree* GetRoot() override;
  const ViewModelTree* GetRoot() const override;
  bool IsTreeRoot() const;

  // On the tree root, the selected node's property when it has it.
  bool HasProp(const std::string& name) const override;
  // Lends the selected node's value only on a node without any parent: a tree
  // root under a plain list reads its own properties.
  bool GetPropW(const std::string& name, base::Value& v) const override;
  // On the tree root, writes to the selected node when it accepts the write,
  // else to this node; then announces the write on the tree root.
  bool SetPropW(const std::string& name, const base::Value& v) override;

  // Announces that `node`'s data changed; false for a null node.
  virtual bool DataChanged(ViewModelTree* node);
  // Drag and drop of `source` onto `target`; no drop is accepted unless a
  // subclass says so.
  virtual bool CanDrop(ViewModel* target, ViewModel* source);
  virtual bool OnDrop(ViewModel* target, ViewModel* source);
  virtual bool ExpandAll();

 private:
  // The node whose properties this one lends, or null.
  ViewModel* LentNode() const;
};

}  // namespace vm

#endif  // OVUI_MVVM_VIEW_MODEL_TREE_H_
