#include "qt/tree_model.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QHeaderView>
#include <QMimeData>
#include <QTimer>
#include <QTreeView>
#include <QVector>
#include <cstring>

#include "base/log.h"
#include "qt/list_model.h"

namespace {

// Everything the tree root announces, for any level of the nest.
const char* const kRootEvents[] = {
    "current-changed", "prop-changed",      "before-item-add", "item-add",     "before-item-remove",
    "item-remove",     "before-remove-all", "remove-all",      "rebind",       "before-filtered",
    "filtered",        "ExpandAll",         "data-changed",    "update-model",
};
constexpr int kRootEventCount = static_cast<int>(sizeof(kRootEvents) / sizeof(kRootEvents[0]));

// What a nested node announces on itself only.
const char* const kNodeEvents[] = {"remove-all", "rebind"};
constexpr int kNodeEventCount = static_cast<int>(sizeof(kNodeEvents) / sizeof(kNodeEvents[0]));

// Repaints wait this long, so that a burst of writes costs one pass.
constexpr int kRepaintDelayMs = 25;

// Item events carry the holding array and the child as exactly these types.
vm::ViewModelArray* ParentParam(const events::Event* e) {
  return static_cast<vm::ViewModelArray*>(e->GetParam("parent").Pointer());
}

vm::ViewModel* ItemParam(const events::Event* e) {
  return static_cast<vm::ViewModel*>(e->GetParam("item").Pointer());
}

// Whether `node` is `ancestor` or lies below it.
bool IsWithin(const vm::ViewModel* node, const vm::ViewModel* ancestor) {
  for (; node; node = node->GetParent()) {
    if (node == ancestor) return true;
  }
  return false;
}

}  // namespace

TreeModelOverViewModel* TreeModelOverViewModel::Create(vm::ViewModelTree* tree, QTreeView* view) {
  OVUI_CHECK(tree != NULL && view != NULL, nullptr);
  const QVariant qv = view->property("binding.value");
  OVUI_CHECK(qv.isValid(), nullptr);
  return new TreeModelOverViewModel(tree, view);
}

TreeModelOverViewModel::TreeModelOverViewModel(vm::ViewModelTree* tree, QTreeView* view)
    : QAbstractItemModel(nullptr), view(view), tree(tree) {
  this->columns.Parse(view->property("binding.value").toString(), view->objectName());
  connect(view, SIGNAL(destroyed(QObject*)), this, SLOT(OnWidgetDestroyed(QObject*)));
  ListenEvents(tree, this, kRootEvents, kRootEventCount);
  tree->AddRef();
  this->drops = tree->CanDrop(nullptr, nullptr);
  view->setModel(this);
  // Parented to the view: it reopens a refused edit there.
  view->setItemDelegate(new vm::CellDelegate(view));
  this->columns.ApplyWidths(view->header());
  connect(view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)), this,
          SLOT(OnCurrentChanged(QModelIndex, QModelIndex)));
  if (this->drops) {
    view->setDragDropMode(QAbstractItemView::DragDrop);
    view->setDefaultDropAction(Qt::MoveAction);
    view->setDropIndicatorShown(true);
  }
  ShowCurrent();
}

TreeModelOverViewModel::~TreeModelOverViewModel() {
  // Off before the releases: the emitters hand back their references on this
  // listener, and a released node may take its emitter with it.
  Drop([](vm::ViewModel*) { return true; });
  UnlistenEvents(this->tree, this, kRootEvents, kRootEventCount);
  this->tree->Release();
  this->tree = nullptr;
}

vm::ViewModel* TreeModelOverViewModel::NodeOf(const QModelIndex& index) {
  return static_cast<vm::ViewModel*>(index.internalPointer());
}

vm::ViewModelArray* TreeModelOverViewModel::ArrayOf(const QModelIndex& parent) const {
  if (!parent.isValid()) return this->tree;
  // Only the tree column has children.
  if (parent.column() != 0) return nullptr;
  return dynamic_cast<vm::ViewModelArray*>(NodeOf(parent));
}

QModelIndex TreeModelOverViewModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return QModelIndex();
  vm::ViewModelArray* array = ArrayOf(parent);
  if (!array) return QModelIndex();
  vm::ViewModel* child = array->GetItems()[static_cast<size_t>(row)];
  Hold(child);
  return createIndex(row, column, static_cast<void*>(child));
}

QModelIndex TreeModelOverViewModel::parent(const QModelIndex& child) const {
  if (!child.isValid()) return QModelIndex();
  vm::ViewModel* up = NodeOf(child)->GetParent();
  if (!up || up == this->tree) return QModelIndex();
  auto* holder = dynamic_cast<vm::ViewModelArray*>(up->GetParent());
  const int row = holder ? holder->IndexOf(up) : -1;
  if (row < 0) return QModelIndex();
  Hold(up);
  return createIndex(row, 0, static_cast<void*>(up));
}

QModelIndex TreeModelOverViewModel::IndexOf(vm::ViewModel* node, int column) const {
  if (!node || node == this->tree || column < 0 || column >= columnCount()) return QModelIndex();
  auto* holder = dynamic_cast<vm::ViewModelArray*>(node->GetParent());
  if (!holder) return QModelIndex();
  const int row = holder->IndexOf(node);
  if (row < 0) return QModelIndex();
  // Every ancestor must be shown too, up to this tree's root.
  if (holder != this->tree && !IndexOf(holder).isValid()) return QModelIndex();
  Hold(node);
  return createIndex(row, column, static_cast<void*>(node));
}

int TreeModelOverViewModel::rowCount(const QModelIndex& parent) const {
  vm::ViewModelArray* array = ArrayOf(parent);
  return array ? static_cast<int>(array->Size()) : 0;
}

int TreeModelOverViewModel::columnCount(const QModelIndex&) const {
  return this->columns.Count();
}

QVariant TreeModelOverViewModel::data(const QModelIndex& index, int role) const {
  const vm::ItemColumn* column = this->columns.At(index.column());
  if (!index.isValid() || !column) return QVariant();
  vm::ViewModel* node = NodeOf(index);
  if (this->errors.Has(node, index.column()) &&
      (role == Qt::ForegroundRole || role == Qt::ToolTipRole || role == Qt::EditRole)) {
    return this->errors.Data(node, index.column(), role);
  }
  return vm::CellData(*column, node, role, this->tree);
}

bool TreeModelOverViewModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  const vm::ItemColumn* column = this->columns.At(index.column());
  if (!index.isValid() || !column) return false;
  vm::ViewModel* node = NodeOf(index);
  std::string error;
  const bool written = vm::SetCellData(*column, node, value, role, error);
  if (!written && error.empty()) error = "refused";
  this->errors.Set(node, index.column(), written ? std::string() : error, value);
  emit dataChanged(index, index);
  return written;
}

QVariant TreeModelOverViewModel::headerData(int section, Qt::Orientation orientation,
                                            int role) const {
  const vm::ItemColumn* column = this->columns.At(section);
  if (orientation == Qt::Horizontal && role == Qt::DisplayRole && column) return column->header;
  return QAbstractItemModel::headerData(section, orientation, role);
}

Qt::ItemFlags TreeModelOverViewModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags drop = this->drops ? Qt::ItemIsDropEnabled : Qt::NoItemFlags;
  const vm::ItemColumn* column = this->columns.At(index.column());
  if (!index.isValid() || !column) return drop;
  Qt::ItemFlags base = Qt::ItemIsSelectable | Qt::ItemIsEnabled | drop;
  if (this->drops) base |= Qt::ItemIsDragEnabled;
  return vm::CellFlags(*column, base);
}

QStringList TreeModelOverViewModel::mimeTypes() const {
  return {QString::fromLatin1(kMimeType)};
}

QMimeData* TreeModelOverViewModel::mimeData(const QModelIndexList& indexes) const {
  if (indexes.isEmpty() || !indexes.first().isValid()) return nullptr;
  QVector<int> path;
  for (QModelIndex at = indexes.first(); at.isValid(); at = at.parent())
    path.prepend(at.row());
  // Row paths mean something only to this model in this process.
  QByteArray bytes;
  QDataStream out(&bytes, QIODevice::WriteOnly);
  out << static_cast<qint64>(QCoreApplication::applicationPid())
      << static_cast<quint64>(reinterpret_cast<quintptr>(this)) << path;
  auto* mime = new QMimeData;
  mime->setData(QString::fromLatin1(kMimeType), bytes);
  return mime;
}

bool TreeModelOverViewModel::DecodeDrag(const QMimeData* data, const QModelIndex& parent,
                                        vm::ViewModel*& source, vm::ViewModel*& target) const {
  if (!this->drops || !data || !data->hasFormat(QString::fromLatin1(kMimeType))) return false;
  QDataStream in(data->data(QString::fromLatin1(kMimeType)));
  qint64 pid = 0;
  quint64 model = 0;
  QVector<int> path;
  in >> pid >> model >> path;
  if (in.status() != QDataStream::Ok || path.isEmpty() ||
      pid != QCoreApplication::applicationPid() ||
      model != static_cast<quint64>(reinterpret_cast<quintptr>(this))) {
    return false;
  }
  QModelIndex at;
  for (int row : path) {
    at = index(row, 0, at);
    if (!at.isValid()) return false;
  }
  source = NodeOf(at);
  target = parent.isValid() ? NodeOf(parent) : this->tree;
  // Onto itself or into its own subtree, a node would cut itself off.
  return !IsWithin(target, source);
}

bool TreeModelOverViewModel::canDropMimeData(const QMimeData* data, Qt::DropAction action, int, int,
                                             const QModelIndex& parent) const {
  vm::ViewModel* source = nullptr;
  vm::ViewModel* target = nullptr;
  if (action == Qt::IgnoreAction || !DecodeDrag(data, parent, source, target)) return false;
  return this->tree->CanDrop(target, source);
}

bool TreeModelOverViewModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int, int,
                                          const QModelIndex& parent) {
  vm::ViewModel* source = nullptr;
  vm::ViewModel* target = nullptr;
  if (action == Qt::IgnoreAction || !DecodeDrag(data, parent, source, target)) return false;
  // The subclass moves the node; its item events move the rows.
  return this->tree->CanDrop(target, source) && this->tree->OnDrop(target, source);
}

Qt::DropActions TreeModelOverViewModel::supportedDropActions() const {
  return Qt::MoveAction;
}

Qt::DropActions TreeModelOverViewModel::supportedDragActions() const {
  return Qt::MoveAction;
}

bool TreeModelOverViewModel::OnEvent(events::Event* e) {
  const std::string& type = e->GetType();
  if (type == "current-changed") {
    ShowCurrent();
  } else if (type == "before-item-add" || type == "item-add" || type == "before-item-remove" ||
             type == "item-remove") {
    HandleItemEvent(type, e);
  } else if (type == "before-remove-all") {
    if (this->pending != Pending::kNone) return false;
    this->pending = Pending::kReset;
    beginResetModel();
  } else if (type == "remove-all") {
    if (this->pending != Pending::kReset) {
      ResetRows();  // a tree node sends no "before-remove-all"
      return false;
    }
    this->pending = Pending::kNone;
    endResetModel();
    DropUnreachable();
    ShowCurrent();
  } else if (type == "rebind") {
    // A rebind names a control, or none for the whole view.
    const char* name = ValueText(e->GetParam("name"));
    if (!*name || this->view->objectName() == QString::fromUtf8(name)) ResetRows();
  } else if (type == "before-filtered") {
    BeginLayout();
  } else if (type == "filtered") {
    EndLayout();
  } else if (type == "ExpandAll") {
    this->view->expandAll();
  } else if (type == "data-changed") {
    vm::ViewModel* node = static_cast<vm::ViewModelTree*>(e->GetParam("item").Pointer());
    if (node) ScheduleRepaint(node);
  } else if (type == "update-model") {
    ScheduleRepaint(nullptr);
  } else if (type == "prop-changed") {
    // Node writes are announced on the root without naming the node; the
    // root's own "PropsChange" (size and current position) changes no cell.
    if (std::strcmp(ValueText(e->GetParam("kind")), "PropChange") == 0) ScheduleRepaint(nullptr);
  }
  return false;
}

bool TreeModelOverViewModel::Reachable(vm::ViewModel* array, QModelIndex& at) const {
  at = QModelIndex();
  if (array == this->tree) return true;
  at = IndexOf(array);
  return at.isValid();
}

void TreeModelOverViewModel::HandleItemEvent(const std::string& type, events::Event* e) {
  vm::ViewModelArray* array = ParentParam(e);
  const int start = e->GetParam("start").I32();
  const int end = e->GetParam("end").I32();
  QModelIndex at;
  // Under a hidden parent nothing shows: the parent's own insertion, which
  // follows, brings its children along.
  const bool shown = array && Reachable(array, at);
  if (type == "before-item-add") {
    if (!shown || this->pending != Pending::kNone) return;
    this->pending = Pending::kInsert;
    beginInsertRows(at, start, end);
  } else if (type == "item-add") {
    if (!shown) return;
    if (this->pending != Pending::kInsert) {
      ResetRows();  // not announced beforehand: the row is already there
      return;
    }
    this->pending = Pending::kNone;
    endInsertRows();
  } else if (type == "before-item-remove") {
    if (!shown || this->pending != Pending::kNone) return;
    this->pending = Pending::kRemove;
    beginRemoveRows(at, start, end);
  } else if (this->pending == Pending::kRemove) {
    this->pending = Pending::kNone;
    endRemoveRows();
    // The array still holds the child: letting go here deletes nothing yet.
    vm::ViewModel* gone = ItemParam(e);
    Drop([gone](vm::ViewModel* node) { return IsWithin(node, gone); });
  } else if (shown) {
    ResetRows();
  }
}

void TreeModelOverViewModel::ResetRows() {
  if (this->pending != Pending::kNone) return;
  beginResetModel();
  endResetModel();
  DropUnreachable();
  ShowCurrent();
}

void TreeModelOverViewModel::BeginLayout() {
  if (this->pending != Pending::kNone) return;
  this->pending = Pending::kLayout;
  emit layoutAboutToBeChanged();
  this->layout_from = persistentIndexList();
  this->layout_nodes.clear();
  for (const QModelIndex& at : this->layout_from)
    this->layout_nodes.push_back(NodeOf(at));
}

void TreeModelOverViewModel::EndLayout() {
  if (this->pending != Pending::kLayout) {
    ResetRows();
    return;
  }
  // Each persistent index follows its node; a node the filter hid has no
  // row any more.
  QModelIndexList to;
  for (int i = 0; i < this->layout_from.size(); ++i)
    to.append(IndexOf(this->layout_nodes[static_cast<size_t>(i)], this->layout_from[i].column()));
  changePersistentIndexList(this->layout_from, to);
  this->layout_from.clear();
  this->layout_nodes.clear();
  this->pending = Pending::kNone;
  emit layoutChanged();
  DropUnreachable();
  ShowCurrent();
}

void TreeModelOverViewModel::ShowCurrent() {
  if (this->syncing || this->pending != Pending::kNone || !this->view) return;
  const QModelIndex at = IndexOf(this->tree->GetCurrentViewModel());
  if (!at.isValid() || at == this->view->currentIndex()) return;
  for (QModelIndex up = at.parent(); up.isValid(); up = up.parent())
    this->view->expand(up);
  this->syncing = true;
  this->view->setCurrentIndex(at);
  this->view->scrollTo(at);
  this->syncing = false;
}

void TreeModelOverViewModel::OnCurrentChanged(const QModelIndex& current, const QModelIndex&) {
  if (this->syncing || !current.isValid()) return;
  vm::ViewModel* node = NodeOf(current);
  auto* holder = dynamic_cast<vm::ViewModelArray*>(node->GetParent());
  if (!holder || this->tree->GetCurrentViewModel() == node) return;
  this->syncing = true;
  holder->SetCurrent(static_cast<unsigned int>(current.row()));
  this->syncing = false;
}

void TreeModelOverViewModel::OnWidgetDestroyed(QObject*) {
  this->view = nullptr;
  delete this;
}

void TreeModelOverViewModel::Hold(vm::ViewModel* node) const {
  if (!node || node == this->tree || !this->held.insert(node).second) return;
  node->AddRef();
  if (dynamic_cast<vm::ViewModelArray*>(node)) {
    ListenEvents(node, const_cast<TreeModelOverViewModel*>(this), kNodeEvents, kNodeEventCount);
  }
}

template <typename Pred>
void TreeModelOverViewModel::Drop(Pred gone) {
  std::vector<vm::ViewModel*> dropped;
  for (auto it = this->held.begin(); it != this->held.end();) {
    if (gone(*it)) {
      dropped.push_back(*it);
      it = this->held.erase(it);
    } else {
      ++it;
    }
  }
  // Every dropped node is still alive here: each is released only below,
  // after all of them are unregistered.
  for (vm::ViewModel* node : dropped) {
    this->errors.Forget(node);
    this->repaint_nodes.erase(node);
    if (dynamic_cast<vm::ViewModelArray*>(node))
      UnlistenEvents(node, this, kNodeEvents, kNodeEventCount);
  }
  for (vm::ViewModel* node : dropped)
    node->Release();
}

void TreeModelOverViewModel::DropUnreachable() {
  std::set<vm::ViewModel*> shown;
  // Held nodes hang below held nodes only, so the walk stops at the others.
  std::vector<vm::ViewModelArray*> todo{this->tree};
  while (!todo.empty()) {
    vm::ViewModelArray* array = todo.back();
    todo.pop_back();
    for (vm::ViewModel* child : array->GetItems()) {
      if (!this->held.count(child)) continue;
      shown.insert(child);
      if (auto* sub = dynamic_cast<vm::ViewModelArray*>(child)) todo.push_back(sub);
    }
  }
  Drop([&shown](vm::ViewModel* node) { return shown.count(node) == 0; });
}

void TreeModelOverViewModel::ScheduleRepaint(vm::ViewModel* node) {
  if (node) {
    this->repaint_nodes.insert(node);
  } else {
    this->repaint_all = true;
  }
  if (this->repaint_scheduled) return;
  this->repaint_scheduled = true;
  QTimer::singleShot(kRepaintDelayMs, this, [this] { Repaint(); });
}

void TreeModelOverViewModel::Repaint() {
  this->repaint_scheduled = false;
  const bool all = this->repaint_all;
  std::set<vm::ViewModel*> nodes;
  nodes.swap(this->repaint_nodes);
  this->repaint_all = false;
  if (this->pending != Pending::kNone || columnCount() == 0) return;
  if (all) {
    RepaintChildren(this->tree);
    return;
  }
  for (vm::ViewModel* node : nodes) {
    // A node the model lets go of may be gone: only held ones are looked at.
    if (!this->held.count(node)) continue;
    const QModelIndex at = IndexOf(node);
    if (at.isValid()) emit dataChanged(at, at.sibling(at.row(), columnCount() - 1));
  }
}

void TreeModelOverViewModel::RepaintChildren(vm::ViewModel* node) {
  auto* array = dynamic_cast<vm::ViewModelArray*>(node);
  if (!array || array->Size() == 0) return;
  const QModelIndex at = array == this->tree ? QModelIndex() : IndexOf(array);
  if (array != this->tree && !at.isValid()) return;
  const int last = static_cast<int>(array->Size()) - 1;
  emit dataChanged(index(0, 0, at), index(last, columnCount() - 1, at));
  for (vm::ViewModel* child : array->GetItems()) {
    if (this->held.count(child)) RepaintChildren(child);
  }
}
