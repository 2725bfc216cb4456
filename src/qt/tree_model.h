#ifndef OVUI_QT_TREE_MODEL_H_
#define OVUI_QT_TREE_MODEL_H_

#include <QAbstractItemModel>
#include <QModelIndex>
#include <QPersistentModelIndex>
#include <set>
#include <string>
#include <vector>

#include "events/event_listener.h"
#include "mvvm/view_model_tree.h"
#include "qt/item_columns.h"

class QTreeView;

// Shows a tree view model in a QTreeView: every node of the nest is a row
// under its parent (the tree root itself is the invisible top), with one
// column per rule line of the view's "binding.value"; the first line is the
// tree column. A filtered ViewModelTreeExt shows its visible nodes only.
//
// The model follows the tree:
// - item additions and removals at any depth are row insertions and
//   removals under their parent's index; one under a node the filter hides
//   is no row change (the node's own insertion brings it along);
// - "remove-all" and "rebind" (the end of a batch) reset the model; a filter
//   is a layout change that keeps persistent indexes on the nodes, and makes
//   those of nodes it hides invalid;
// - "ExpandAll" expands the view;
// - property writes announced on the tree root, "data-changed" and
//   "update-model" repaint rows, at most once per 25 ms.
// The selected row is the tree's current node and the other way round; a
// node selected in code is scrolled to with its ancestors expanded.
//
// Cells read and write through the column rules (CellData, SetCellData); a
// refused write shows red with the refusal as its tool tip until a later
// write to the cell succeeds. The view gets a CellDelegate.
//
// Drag and drop is switched on when the tree answers CanDrop(nullptr,
// nullptr) with true: asked with two null nodes, a tree says whether it
// takes drops at all. A node then travels as "mvvm_tree_drag" data (its row
// path from the root, valid in this process and model only); hovering asks
// CanDrop(target, source), releasing calls OnDrop(target, source), and the
// subclass moves the node there. A node never lands on itself or inside its
// own subtree.
//
// The model holds one reference on the tree root and one on every node it has
// handed out an index for, so no index ever names a destroyed node; it lives
// until the view is destroyed.
class TreeModelOverViewModel : public QAbstractItemModel, public events::EventListener {
  Q_OBJECT

 public:
  static constexpr const char* kMimeType = "mvvm_tree_drag";

  // The model, installed on `view`; null (logged) for a null argument or a
  // view without "binding.value".
  static TreeModelOverViewModel* Create(vm::ViewModelTree* tree, QTreeView* view);
  ~TreeModelOverViewModel() override;

  QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                       const QModelIndex& parent) const override;
  bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                    const QModelIndex& parent) override;
  Qt::DropActions supportedDropActions() const override;
  Qt::DropActions supportedDragActions() const override;

  // The index of `node`'s row in `column`; invalid for the tree root, a node
  // of another tree and a node the filter hides.
  QModelIndex IndexOf(vm::ViewModel* node, int column = 0) const;
  // The node a valid index names.
  static vm::ViewModel* NodeOf(const QModelIndex& index);

  bool OnEvent(events::Event* e) override;

 public slots:
  void OnCurrentChanged(const QModelIndex& current, const QModelIndex& previous);
  void OnWidgetDestroyed(QObject* obj);

 private:
  TreeModelOverViewModel(vm::ViewModelTree* tree, QTreeView* view);

  // Which begin call of the item-model protocol waits for its end call.
  enum class Pending { kNone, kInsert, kRemove, kReset, kLayout };

  // The array holding the children of `parent` (the root for an invalid one).
  vm::ViewModelArray* ArrayOf(const QModelIndex& parent) const;
  // Whether `array`'s rows are in the model, and under which index.
  bool Reachable(vm::ViewModel* array, QModelIndex& at) const;
  void HandleItemEvent(const std::string& type, events::Event* e);
  // An empty reset pair: the tree changed wholesale before it said so.
  void ResetRows();
  void BeginLayout();
  void EndLayout();
  // Shows the tree's current node as the view's current row.
  void ShowCurrent();

  // Keeps `node` alive while an index may name it, and hears a nested node's
  // own "remove-all" and "rebind", which the tree root does not repeat.
  void Hold(vm::ViewModel* node) const;
  // Lets go of the held nodes for which `gone` answers true.
  template <typename Pred>
  void Drop(Pred gone);
  // Lets go of every held node the view no longer shows.
  void DropUnreachable();

  void ScheduleRepaint(vm::ViewModel* node);
  void Repaint();
  void RepaintChildren(vm::ViewModel* array);

  bool DecodeDrag(const QMimeData* data, const QModelIndex& parent, vm::ViewModel*& source,
                  vm::ViewModel*& target) const;

  QTreeView* view = nullptr;
  vm::ViewModelTree* tree = nullptr;
  vm::ItemColumns columns;
  vm::CellErrors errors;
  bool drops = false;
  Pending pending = Pending::kNone;
  // The view's current index is being set from the tree's current node.
  bool syncing = false;
  mutable std::set<vm::ViewModel*> held;
  // The persistent indexes of a layout change and the nodes they named.
  QModelIndexList layout_from;
  std::vector<vm::ViewModel*> layout_nodes;
  // Rows waiting for the next repaint; `repaint_all` covers every row.
  std::set<vm::ViewModel*> repaint_nodes;
  bool repaint_all = false;
  bool repaint_scheduled = false;
};

#endif  // OVUI_QT_TREE_MODEL_H_
