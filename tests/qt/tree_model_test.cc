#include "qt/tree_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>
#include <QVBoxLayout>
#include <memory>

#include "mvvm/view_model_tree_ext.h"
#include "qt/binding_context.h"
#include "support/item_views.h"
#include "support/log_capture.h"

namespace {

// A node, added to `parent` when given, that filters on its name and takes
// drops onto any node not named "locked".
struct Node : vm::ViewModelTreeExt {
  explicit Node(std::string name, Node* parent = nullptr) : name(std::move(name)) {
    InstallProp("name", &this->name);
    InstallProp("qty", &this->qty);
    InstallProp("done", &this->done);
    RegisterValidator("qty_range", new ovui_test::RangeValidator(0, 100));
    if (parent) parent->Add(this);
  }
  bool FilterOne(vm::ViewModel* node, const std::string& rule) override {
    return static_cast<Node*>(node)->name.find(rule) != std::string::npos;
  }
  bool CanDrop(vm::ViewModel* target, vm::ViewModel*) override {
    return !target || static_cast<Node*>(target)->name != "locked";
  }
  bool OnDrop(vm::ViewModel* target, vm::ViewModel* source) override {
    source->AddRef();
    static_cast<vm::ViewModelArray*>(source->GetParent())->Remove(source);
    return static_cast<vm::ViewModelArray*>(target)->Add(source);
  }
  std::string name;
  int qty = 0, done = 0;
};

// root: a (a1 (a1x), a2), b (b1), c; in a form bound to a screen holding it.
struct TreeModelTest : testing::Test {
  void SetUp() override {
    a = new Node("a", tree);
    a1 = new Node("a1", a);
    a1x = new Node("a1x", a1);
    a2 = new Node("a2", a);
    b = new Node("b", tree);
    b1 = new Node("b1", b);
    c = new Node("c", tree);
    screen->SetSubViewModel("tree", tree);
    (new QVBoxLayout(form))->addWidget(view);
    view->setProperty("binding.vm", "tree");
    view->setProperty("binding.value",
                      "{Binding Path=name}\n{Binding Path=qty, Validator=qty_range}\n"
                      "{Binding Path=done, Editor=check}");
    ASSERT_TRUE(vm::BindingContext::CreateAndBind(form, screen));
    model = qobject_cast<TreeModelOverViewModel*>(view->model());
    ASSERT_TRUE(model);
    new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::Fatal,
                                 model);
  }
  // The form and its context go first: the tree is back to its owner's reference.
  ~TreeModelTest() override {
    delete form;
    EXPECT_TRUE(!screen || tree->RefCount() == 1) << tree->RefCount();
    base::SafeRelease(screen);
  }
  QModelIndex At(vm::ViewModel* node, int column = 0) const { return model->IndexOf(node, column); }
  std::string Rows(vm::ViewModel* parent = nullptr) const {  // the names under `parent`
    return ovui_test::Texts(model, 0, parent ? At(parent) : QModelIndex());
  }

  ovui_test::LogCapture log;
  vm::ViewModel* screen = new vm::ViewModel;
  Node* tree = new Node("root");
  Node *a, *a1, *a1x, *a2, *b, *b1, *c;
  QWidget* form = new QWidget;
  QTreeView* view = new QTreeView;
  QPointer<TreeModelOverViewModel> model;
};

TEST_F(TreeModelTest, NodesShowSelectEditAndFollowAddsRemovesAndBatches) {
  ASSERT_TRUE(ovui_test::Show(form, QSize(360, 260)));
  view->expand(At(a));
  ovui_test::ClickCell(view, At(a2));
  EXPECT_EQ(tree->GetCurrentViewModel(), a2);
  // Chosen in code under collapsed nodes: the view follows and opens the way.
  view->collapseAll();
  new Node("b1z", b1);
  EXPECT_EQ(view->currentIndex(), At(b1->Get(0)));
  EXPECT_TRUE(view->isExpanded(At(b)));
  EXPECT_TRUE(view->isExpanded(At(b1)));
  view->collapseAll();
  tree->ExpandAll();
  EXPECT_TRUE(view->isExpanded(At(a1)));
  ovui_test::ExpectRefusedEdit(view, At(a2, 1), "500", "must be between 0 and 100");
  EXPECT_EQ(a2->qty, 0);
  EXPECT_TRUE(model->setData(At(a2, 1), 50));
  EXPECT_FALSE(At(a2, 1).data(Qt::ToolTipRole).isValid());
  EXPECT_TRUE(model->setData(At(a2, 2), Qt::Checked, Qt::CheckStateRole));
  EXPECT_EQ(a2->done, 1);
  // Refused: a view without columns.
  EXPECT_EQ(TreeModelOverViewModel::Create(tree, new QTreeView(form)), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("Create", "qv.isValid()"));

  const QPersistentModelIndex kept_a1x(At(a1x));
  a1->Add(new Node("a1y"), 0);
  EXPECT_EQ(kept_a1x.row(), 1);
  tree->Add(new Node("first"), 0);
  a->Remove(a1);
  EXPECT_FALSE(kept_a1x.isValid());  // gone with its parent

  a->Reset();  // announced on a only
  tree->BeginBatch();
  new Node("n1", a);
  new Node("d", tree);
  tree->EndBatch();
  EXPECT_EQ(Rows(), "first,a,b,c,d");
  EXPECT_EQ(Rows(a), "n1");
  EXPECT_EQ(view->currentIndex(), At(tree->Get(4)));
  // The view models go first: the model's references keep the tree shown.
  screen->Release();
  screen = nullptr;
  new Node("late", tree);
  EXPECT_EQ(Rows(), "first,a,b,c,d,late");
}

TEST_F(TreeModelTest, ChangesRepaintOncePerWindowAndFiltersKeepPersistentIndexes) {
  view->expandAll();
  QSignalSpy changed(model.data(), SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
  a1x->SetPropW("name", std::string("a1xz"));
  a2->SetPropW("name", std::string("a2b"));
  tree->DataChanged(b1);
  EXPECT_EQ(changed.size(), 0);  // deferred
  QTest::qWait(150);
  EXPECT_GE(changed.size(), 1);  // one per level
  EXPECT_LE(changed.size(), 4);
  EXPECT_EQ(At(a1x).data().toString(), "a1xz");

  const QPersistentModelIndex kept_a1x(At(a1x)), kept_c(At(c));
  tree->Filter("x");
  EXPECT_EQ(Rows(), "a");
  EXPECT_EQ(kept_a1x, At(a1x));
  EXPECT_FALSE(kept_c.isValid());

  new Node("a2q", a2);  // hidden, and so is a2
  new Node("b1x", b1);  // shows b1, then b
  a1->Remove(a1x);      // a1 and a have nothing left to show
  EXPECT_EQ(Rows(), "b");
  tree->Filter("");
  EXPECT_EQ(Rows(), "a,b,c");
  EXPECT_EQ(Rows(a2), "a2q");
}

TEST_F(TreeModelTest, DraggedNodesMoveWhereTheTreeAllows) {
  auto* locked = new Node("locked", tree);
  std::unique_ptr<QMimeData> b1_drag(model->mimeData({At(b1)})), a_drag(model->mimeData({At(a)}));
  EXPECT_TRUE(model->canDropMimeData(b1_drag.get(), Qt::MoveAction, -1, -1, At(a)));
  // Refused: onto itself, where the tree says no, and into its own subtree.
  EXPECT_FALSE(model->canDropMimeData(b1_drag.get(), Qt::MoveAction, -1, -1, At(b1)));
  EXPECT_FALSE(model->canDropMimeData(b1_drag.get(), Qt::MoveAction, -1, -1, At(locked)));
  EXPECT_FALSE(model->canDropMimeData(a_drag.get(), Qt::MoveAction, -1, -1, At(a1x)));
  EXPECT_FALSE(model->dropMimeData(a_drag.get(), Qt::MoveAction, -1, -1, At(a1)));
  // Another model's row paths name nothing here.
  QTreeView other_view;
  other_view.setProperty("binding.value", "{Binding Path=name}");
  TreeModelOverViewModel* other = TreeModelOverViewModel::Create(tree, &other_view);
  std::unique_ptr<QMimeData> foreign(other->mimeData({other->IndexOf(b1)}));
  EXPECT_FALSE(model->canDropMimeData(foreign.get(), Qt::MoveAction, -1, -1, At(a)));

  // Through the view's own drop handling: c onto a2.
  ASSERT_TRUE(ovui_test::Show(form, QSize(360, 260)));
  view->expandAll();
  std::unique_ptr<QMimeData> carried(model->mimeData({At(c)}));
  const QPoint onto = view->visualRect(At(a2)).center();
  QDragEnterEvent enter(onto, Qt::MoveAction, carried.get(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(view->viewport(), &enter);
  QDropEvent drop(onto, Qt::MoveAction, carried.get(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(view->viewport(), &drop);
  EXPECT_EQ(Rows(), "a,b,locked");
  EXPECT_EQ(Rows(a2), "c");

  // A list under a tree view is refused.
  screen->SetSubViewModel("list", new vm::ViewModelArray);
  view->setProperty("binding.vm", "list");
  vm::BindingContext::CreateAndBind(form, screen);
  EXPECT_TRUE(log.HasFailedCheck("Bind", "vm->GetType() == ViewModel::VIEW_MODEL_TREE"));
}

}  // namespace
