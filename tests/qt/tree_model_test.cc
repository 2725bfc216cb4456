#include "qt/tree_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QDropEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMimeData>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>
#include <QVBoxLayout>
#include <memory>
#include <string>
#include <utility>

#include "mvvm/view_model_tree_ext.h"
#include "qt/binding_context.h"
#include "support/log_capture.h"

namespace {

// Refuses names longer than eight characters.
struct ShortName : vm::IValidator {
  bool IsValid(const base::Value& v, std::string& msg) override {
    const char* s = v.Str();
    if (s && std::string(s).size() <= 8) return true;
    msg = "too long";
    return false;
  }
};

// A node that filters on its name and takes drops of a node onto any node
// not named "locked".
struct Node : vm::ViewModelTreeExt {
  explicit Node(std::string name) : name(std::move(name)) {
    InstallProp("name", &this->name);
    InstallProp("done", &this->done);
    RegisterValidator("short", new ShortName);
  }
  Node* Child(const char* child_name) {
    auto* child = new Node(child_name);
    Add(child);
    return child;
  }
  bool FilterOne(vm::ViewModel* node, const std::string& rule) override {
    return static_cast<Node*>(node)->name.find(rule) != std::string::npos;
  }
  bool CanDrop(vm::ViewModel* target, vm::ViewModel* source) override {
    if (!target && !source) return true;  // takes drops at all
    return target && source && static_cast<Node*>(target)->name != "locked";
  }
  bool OnDrop(vm::ViewModel* target, vm::ViewModel* source) override {
    source->AddRef();
    static_cast<vm::ViewModelArray*>(source->GetParent())->Remove(source);
    static_cast<vm::ViewModelArray*>(target)->Add(source);
    return true;
  }
  std::string name;
  int done = 0;
};

const char kColumns[] =
    "{Binding Path=name, Validator=short, Header=Name, Width=140}\n"
    "{Binding Path=done, Editor=check, Header=Done}";

// root: a (a1 (a1x), a2), b (b1), c
struct TreeModelTest : testing::Test {
  TreeModelTest() {
    a = tree->Child("a");
    a1 = a->Child("a1");
    a1x = a1->Child("a1x");
    a2 = a->Child("a2");
    b = tree->Child("b");
    b1 = b->Child("b1");
    c = tree->Child("c");
    view->setObjectName("nodes");
    view->setProperty("binding.value", kColumns);
  }
  ~TreeModelTest() override {
    delete view;
    base::SafeRelease(tree);
  }
  void Bind() {
    model = TreeModelOverViewModel::Create(tree, view);
    ASSERT_TRUE(model);
    Test(model);
  }
  static void Test(QAbstractItemModel* m) {
    // Aborts the test program as soon as the model breaks Qt's contract.
    new QAbstractItemModelTester(m, QAbstractItemModelTester::FailureReportingMode::Fatal, m);
  }
  QModelIndex At(vm::ViewModel* node, int column = 0) const { return model->IndexOf(node, column); }
  // The names of `parent`'s rows: "a,b".
  std::string Rows(vm::ViewModel* parent = nullptr) const {
    const QModelIndex at = parent ? At(parent) : QModelIndex();
    std::string out;
    for (int r = 0; r < model->rowCount(at); ++r)
      out += (r ? "," : "") + model->index(r, 0, at).data().toString().toStdString();
    return out;
  }
  void Show() {
    view->resize(360, 260);
    view->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(view));
  }

  Node* tree = new Node("root");
  Node *a, *a1, *a1x, *a2, *b, *b1, *c;
  QTreeView* view = new QTreeView;
  QPointer<TreeModelOverViewModel> model;
};

TEST_F(TreeModelTest, BindsThroughTheContextAndSelectsBothWays) {
  auto* form = new QWidget;
  auto* layout = new QVBoxLayout(form);
  view->setProperty("binding.vm", "tree");
  layout->addWidget(view);
  auto* screen = new vm::ViewModel;
  tree->AddRef();
  screen->SetSubViewModel("tree", tree);
  ASSERT_TRUE(vm::BindingContext::CreateAndBind(form, screen));
  model = qobject_cast<TreeModelOverViewModel*>(view->model());
  ASSERT_TRUE(model);
  Test(model);
  EXPECT_EQ(model->headerData(0, Qt::Horizontal).toString(), "Name");
  EXPECT_EQ(model->headerData(1, Qt::Horizontal).toString(), "Done");
  EXPECT_EQ(view->header()->sectionSize(0), 140);
  EXPECT_EQ(Rows(), "a,b,c");
  EXPECT_EQ(Rows(a), "a1,a2");
  EXPECT_EQ(At(a1x).parent(), At(a1));

  form->resize(360, 260);
  form->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(form));
  view->expand(At(a));
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(At(a2)).center());
  EXPECT_EQ(tree->GetCurrentViewModel(), a2);

  // Chosen in code, deep under collapsed nodes: the view follows and opens
  // the way there.
  view->collapseAll();
  b1->Child("b1z");
  EXPECT_EQ(tree->GetCurrentViewModel(), b1->Get(0));
  EXPECT_EQ(view->currentIndex(), At(b1->Get(0)));
  EXPECT_TRUE(view->isExpanded(At(b)));
  EXPECT_TRUE(view->isExpanded(At(b1)));
  a1->SetCurrent(0);
  EXPECT_EQ(view->currentIndex(), At(a1x));

  view->collapseAll();
  tree->ExpandAll();
  EXPECT_TRUE(view->isExpanded(At(a1)));
  const QString shot = QCoreApplication::applicationDirPath() + "/tree_model.png";
  EXPECT_TRUE(form->grab().save(shot));

  // The form (and its context) go before the view models they were bound to.
  delete form;
  view = nullptr;
  EXPECT_FALSE(model);
  screen->Release();
}

TEST_F(TreeModelTest, OnlyTreesWithColumnsBind) {
  ovui_test::LogCapture log;
  QTreeView bare;
  EXPECT_EQ(TreeModelOverViewModel::Create(tree, &bare), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("Create", "qv.isValid()"));

  auto* list = new vm::ViewModelArray;
  view->setProperty("binding.vm", "list");
  auto* screen = new vm::ViewModel;
  screen->SetSubViewModel("list", list);
  auto* form = new QWidget;
  view->setParent(form);
  vm::BindingContext::CreateAndBind(form, screen);
  EXPECT_TRUE(log.HasFailedCheck("Bind", "vm->GetType() == ViewModel::VIEW_MODEL_TREE"));
  EXPECT_EQ(view->model(), nullptr);
  delete form;
  view = nullptr;
  screen->Release();
}

TEST_F(TreeModelTest, RowsFollowAddsAndRemovesAtAnyDepth) {
  Bind();
  QSignalSpy inserted(model.data(), SIGNAL(rowsInserted(QModelIndex, int, int)));
  QSignalSpy removed(model.data(), SIGNAL(rowsRemoved(QModelIndex, int, int)));
  const QPersistentModelIndex kept_c(At(c));
  const QPersistentModelIndex kept_a1x(At(a1x));

  a1->Add(new Node("a1y"), 0);
  ASSERT_EQ(inserted.size(), 1);
  EXPECT_EQ(inserted[0][0].toModelIndex(), At(a1));
  EXPECT_EQ(inserted[0][1].toInt(), 0);
  EXPECT_EQ(Rows(a1), "a1y,a1x");
  EXPECT_EQ(kept_a1x.row(), 1);

  tree->Add(new Node("first"), 0);
  EXPECT_EQ(Rows(), "first,a,b,c");
  EXPECT_EQ(kept_c.row(), 3);

  a->Remove(a1);
  ASSERT_EQ(removed.size(), 1);
  EXPECT_EQ(removed[0][0].toModelIndex(), At(a));
  EXPECT_EQ(Rows(a), "a2");
  EXPECT_FALSE(kept_a1x.isValid());  // gone with its parent
  EXPECT_EQ(kept_c.data().toString(), "c");
}

TEST_F(TreeModelTest, FiltersKeepPersistentIndexesOnTheirNodes) {
  Bind();
  view->expandAll();
  const QPersistentModelIndex kept_a1x(At(a1x));
  const QPersistentModelIndex kept_c(At(c));
  QSignalSpy layouts(model.data(), SIGNAL(layoutChanged()));
  tree->Filter("x");
  EXPECT_EQ(layouts.size(), 1);
  EXPECT_EQ(Rows(), "a");
  EXPECT_EQ(Rows(a), "a1");
  EXPECT_EQ(kept_a1x, At(a1x));
  EXPECT_FALSE(kept_c.isValid());

  QSignalSpy inserted(model.data(), SIGNAL(rowsInserted(QModelIndex, int, int)));
  QSignalSpy removed(model.data(), SIGNAL(rowsRemoved(QModelIndex, int, int)));
  a2->Child("a2q");  // hidden, and so is a2: no row
  EXPECT_EQ(inserted.size(), 0);
  b1->Child("b1x");  // shows b1, then b: one row at the top
  ASSERT_EQ(inserted.size(), 1);
  EXPECT_EQ(inserted[0][0].toModelIndex(), QModelIndex());
  EXPECT_EQ(Rows(), "a,b");
  EXPECT_EQ(Rows(b1), "b1x");

  a1->Remove(a1x);  // a1 and a have nothing left to show
  EXPECT_EQ(Rows(), "b");
  EXPECT_FALSE(kept_a1x.isValid());
  EXPECT_GE(removed.size(), 1);

  tree->Filter("");
  EXPECT_EQ(Rows(), "a,b,c");
  EXPECT_EQ(Rows(a), "a1,a2");
  EXPECT_EQ(Rows(a2), "a2q");
}

TEST_F(TreeModelTest, ResetsAndBatchesRebuildTheRows) {
  Bind();
  const QPersistentModelIndex kept_a1(At(a1));
  QSignalSpy reset(model.data(), SIGNAL(modelReset()));
  a->Reset();  // announced on a only
  EXPECT_EQ(reset.size(), 1);
  EXPECT_FALSE(kept_a1.isValid());
  EXPECT_EQ(Rows(a), "");

  tree->BeginBatch();
  a->Child("n1");
  tree->Child("d");
  tree->EndBatch();
  EXPECT_EQ(reset.size(), 2);
  EXPECT_EQ(Rows(), "a,b,c,d");
  EXPECT_EQ(Rows(a), "n1");
  EXPECT_EQ(view->currentIndex(), At(tree->Get(3)));

  tree->Reset();
  EXPECT_EQ(reset.size(), 3);
  EXPECT_EQ(model->rowCount(), 0);
  tree->Child("again");
  EXPECT_EQ(Rows(), "again");
}

TEST_F(TreeModelTest, ChangesRepaintOncePerWindow) {
  Bind();
  view->expandAll();
  QSignalSpy changed(model.data(), SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
  a1x->SetPropW("name", std::string("a1z"));
  a2->SetPropW("name", std::string("a2b"));
  tree->DataChanged(b1);
  EXPECT_EQ(changed.size(), 0);  // deferred
  ASSERT_TRUE(changed.wait(200));
  QTest::qWait(60);
  const int pass = changed.size();
  EXPECT_GE(pass, 1);
  EXPECT_LE(pass, 4);  // one per shown level, not one per change
  EXPECT_EQ(At(a1x).data().toString(), "a1z");
  QTest::qWait(60);
  EXPECT_EQ(changed.size(), pass);

  tree->DataChanged(b1);
  ASSERT_TRUE(changed.wait(200));
  EXPECT_EQ(changed.last()[0].toModelIndex(), At(b1));
  EXPECT_EQ(changed.last()[1].toModelIndex(), At(b1, 1));
}

TEST_F(TreeModelTest, CellsEditThroughTheRules) {
  Bind();
  Show();
  view->expandAll();
  const QModelIndex name = At(a2);
  EXPECT_TRUE(model->flags(name) & Qt::ItemIsEditable);
  auto editor_of = [this](const QModelIndex& cell) {
    QWidget* open = view->indexWidget(cell);
    return qobject_cast<QLineEdit*>(open ? open : QApplication::focusWidget());
  };
  view->edit(name);
  QLineEdit* editor = editor_of(name);
  ASSERT_TRUE(editor);
  editor->selectAll();
  QTest::keyClicks(editor, "a2new");
  QTest::keyClick(editor, Qt::Key_Return);
  QTest::qWait(20);  // the delegate commits on its next turn
  EXPECT_EQ(a2->name, "a2new");

  // Refused by the validator: unchanged, red, the reason as tool tip, and
  // the editor comes back with the input.
  view->edit(name);
  editor = editor_of(name);
  ASSERT_TRUE(editor);
  editor->selectAll();
  QTest::keyClicks(editor, "muchtoolong");
  QTest::keyClick(editor, Qt::Key_Return);
  QTest::qWait(20);
  EXPECT_EQ(a2->name, "a2new");
  EXPECT_EQ(name.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::red));
  EXPECT_EQ(name.data(Qt::ToolTipRole).toString(), "too long");
  ASSERT_TRUE(QTest::qWaitFor([&] { return view->indexWidget(name) != nullptr; }, 1000));
  editor = qobject_cast<QLineEdit*>(view->indexWidget(name));
  ASSERT_TRUE(editor);
  EXPECT_EQ(editor->text(), "muchtoolong");
  QTest::keyClick(editor, Qt::Key_Escape);
  EXPECT_TRUE(model->setData(name, "fine"));
  EXPECT_FALSE(name.data(Qt::ForegroundRole).isValid());
  EXPECT_FALSE(name.data(Qt::ToolTipRole).isValid());
  EXPECT_EQ(a2->name, "fine");

  const QModelIndex done = At(a2, 1);
  EXPECT_TRUE(model->flags(done) & Qt::ItemIsUserCheckable);
  EXPECT_EQ(done.data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
  EXPECT_TRUE(model->setData(done, Qt::Checked, Qt::CheckStateRole));
  EXPECT_EQ(a2->done, 1);
  EXPECT_EQ(done.data(Qt::CheckStateRole).toInt(), Qt::Checked);
}

TEST_F(TreeModelTest, DraggedNodesMoveWhereTheTreeAllows) {
  Bind();
  EXPECT_EQ(view->dragDropMode(), QAbstractItemView::DragDrop);
  std::unique_ptr<QMimeData> drag(model->mimeData({At(b1)}));
  ASSERT_TRUE(drag);
  EXPECT_TRUE(drag->hasFormat(TreeModelOverViewModel::kMimeType));
  EXPECT_TRUE(model->canDropMimeData(drag.get(), Qt::MoveAction, -1, -1, At(a)));
  EXPECT_FALSE(model->canDropMimeData(drag.get(), Qt::MoveAction, -1, -1, At(b1)));
  auto* locked = tree->Child("locked");
  EXPECT_FALSE(model->canDropMimeData(drag.get(), Qt::MoveAction, -1, -1, At(locked)));

  std::unique_ptr<QMimeData> whole_a(model->mimeData({At(a)}));
  EXPECT_FALSE(model->canDropMimeData(whole_a.get(), Qt::MoveAction, -1, -1, At(a1x)));
  EXPECT_FALSE(model->dropMimeData(whole_a.get(), Qt::MoveAction, -1, -1, At(a1)));
  QMimeData text;
  text.setText("b1");
  EXPECT_FALSE(model->canDropMimeData(&text, Qt::MoveAction, -1, -1, At(a)));
  // Another model's (or process's) row paths name nothing here.
  QTreeView other_view;
  other_view.setProperty("binding.value", kColumns);
  TreeModelOverViewModel* other = TreeModelOverViewModel::Create(tree, &other_view);
  std::unique_ptr<QMimeData> foreign(other->mimeData({other->IndexOf(b1)}));
  EXPECT_FALSE(model->canDropMimeData(foreign.get(), Qt::MoveAction, -1, -1, At(a)));

  EXPECT_TRUE(model->dropMimeData(drag.get(), Qt::MoveAction, -1, -1, At(a)));
  EXPECT_EQ(Rows(a), "a1,a2,b1");
  EXPECT_EQ(Rows(b), "");

  // Through the view's own drop handling: c onto a2.
  Show();
  view->expandAll();
  std::unique_ptr<QMimeData> carried(model->mimeData({At(c)}));
  const QPoint onto = view->visualRect(At(a2)).center();
  QDragEnterEvent enter(onto, Qt::MoveAction, carried.get(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(view->viewport(), &enter);
  QDragMoveEvent move(onto, Qt::MoveAction, carried.get(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(view->viewport(), &move);
  EXPECT_TRUE(move.isAccepted());
  QDropEvent drop(onto, Qt::MoveAction, carried.get(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(view->viewport(), &drop);
  EXPECT_EQ(Rows(), "a,b,locked");
  EXPECT_EQ(Rows(a2), "c");
}

TEST_F(TreeModelTest, TheViewOwnsTheModelAndItsReferences) {
  Bind();
  view->expandAll();
  EXPECT_EQ(tree->RefCount(), 2);
  // The view model goes first: the model's references keep it shown.
  tree->Release();
  Node* const kept = tree;
  tree = nullptr;
  kept->Child("late");
  EXPECT_EQ(Rows(), "a,b,c,late");
  delete view;
  view = nullptr;
  EXPECT_FALSE(model);

  // And the view goes first: the tree is back to the caller's reference.
  tree = new Node("root2");
  tree->Child("x")->Child("y");
  view = new QTreeView;
  view->setProperty("binding.value", kColumns);
  Bind();
  view->expandAll();
  delete view;
  view = nullptr;
  EXPECT_EQ(tree->RefCount(), 1);
  EXPECT_EQ(tree->Get(0)->RefCount(), 1);
}

}  // namespace
