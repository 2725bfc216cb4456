#include "mvvm/view_model_tree_ext.h"

#include <gtest/gtest.h>

#include <string>

#include "support/recording_listener.h"
#include "support/toy_objects.h"

using base::Value;
using ovui_test::RecordingListener;

namespace {

// A node named by its "name" property; a rule matches a substring of the name.
class Node : public vm::ViewModelTreeExt {
 public:
  Node() { InstallProp("name", &this->name); }
  bool FilterOne(vm::ViewModel* node, const std::string& rule) override {
    const std::string& seen = static_cast<Node*>(node)->name;
    visited += seen + " ";
    return seen.find(rule) != std::string::npos;
  }
  std::string name;
  std::string visited;
};

Node* Child(vm::ViewModelArray* parent, const std::string& name, int* destroyed = nullptr) {
  Node* node = new ovui_test::Tracked<Node>(destroyed);
  node->name = name;
  parent->Add(node);
  return node;
}

// The visible tree below `node`, as "name(children) name".
std::string Shown(vm::ViewModelArray* node) {
  std::string out;
  for (vm::ViewModel* child : node->GetItems()) {
    auto* n = static_cast<Node*>(child);
    out += (out.empty() ? "" : " ") + n->name + (n->Size() ? "(" + Shown(n) + ")" : "");
  }
  return out;
}

// The types of the events recorded so far, and forgets them.
std::string Took(RecordingListener* l) {
  std::string types;
  for (const std::string& e : l->events)
    types += e.substr(0, e.find(':')) + " ";
  l->events.clear();
  return types;
}

struct TreeTest : testing::Test {
  TreeTest() {
    root->name = "root";
    Node* fruit = Child(root, "fruit", &destroyed);
    pear = Child(fruit, "pear", &destroyed);
    for (const char* name : {"seed", "tab"})
      Child(pear, name, &destroyed);
    Child(fruit, "plum", &destroyed);
    for (const char* name : {"box", "jam", "kebab"})
      Child(root, name, &destroyed);
    for (const char* type : {"before-filtered", "filtered", "item-add", "before-remove-all",
                             "remove-all", "data-changed", "ExpandAll"})
      root->On(type, events);
  }
  ~TreeTest() override {
    base::SafeRelease(root);
    events->Release();
  }
  int destroyed = 0;
  Node* root = new Node();
  Node* pear = nullptr;
  RecordingListener* events = new RecordingListener();
};

}  // namespace

TEST_F(TreeTest, RootLendsTheSelectedNodeAndAnnouncesEveryWrite) {
  Value v;
  EXPECT_TRUE(root->GetPropW("name", v));
  EXPECT_STREQ(v.Str(), "kebab");  // selected last
  root->On("prop-changed", events);
  EXPECT_TRUE(pear->SetPropW("name", Value("pea")));
  EXPECT_EQ(events->events.back(), "prop-changed:kind=PropChange name=name old=pea value=pea ");
  EXPECT_TRUE(root->SetPropW("name", Value("kebap")));
  EXPECT_TRUE(root->GetPropW("name", v));
  EXPECT_STREQ(v.Str(), "kebap");
  EXPECT_EQ(root->name, "root");
  Took(events);
  EXPECT_TRUE(root->DataChanged(pear) && root->ExpandAll());
  EXPECT_EQ(Took(events), "data-changed ExpandAll ");
}

TEST(ViewModelTreeTest, TreeUnderAPlainListIsItsOwnRoot) {
  auto* list = new vm::ViewModelArray();
  Node* tree = Child(list, "tree");
  EXPECT_TRUE(tree->HasProp("name"));  // the list has selected the tree itself
  Node* inner = Child(tree, "inner");
  EXPECT_TRUE(tree->IsTreeRoot() && !inner->IsTreeRoot());
  EXPECT_EQ(static_cast<vm::ViewModel*>(inner)->GetRoot(), tree);
  Value v;
  EXPECT_TRUE(tree->GetPropW("name", v));  // lends nothing for reading
  EXPECT_STREQ(v.Str(), "tree");
  EXPECT_TRUE(tree->SetPropW("name", Value("x")));  // but writes through
  EXPECT_EQ(inner->name, "x");
  list->Release();
}

TEST_F(TreeTest, FilterKeepsThePathsToMatchesAndNarrowsIncrementally) {
  EXPECT_TRUE(root->Filter("a"));
  EXPECT_EQ(Shown(root), "fruit(pear(tab)) jam kebab");
  root->visited.clear();
  EXPECT_TRUE(root->Filter("ab"));  // searches only what "a" left
  EXPECT_EQ(root->visited, "root fruit pear tab jam kebab ");
  EXPECT_EQ(Shown(root), "fruit(pear(tab)) kebab");
  root->visited.clear();
  EXPECT_TRUE(root->Filter("b"));  // a new search over everything
  EXPECT_EQ(root->visited, "root fruit pear seed tab plum box jam kebab ");
  EXPECT_EQ(Shown(root), "fruit(pear(tab)) box kebab");
  Took(events);
  EXPECT_TRUE(root->Filter("b"));
  EXPECT_EQ(Took(events), "");
  EXPECT_TRUE(root->Filter(""));
  EXPECT_EQ(Took(events), "before-filtered filtered ");
  EXPECT_EQ(Shown(root), "fruit(pear(seed tab) plum) box jam kebab");
}

TEST_F(TreeTest, AddsRemovesAndResetsWhileFiltered) {
  root->Filter("b");
  Took(events);
  Child(root, "pig", &destroyed);  // fails: added silently
  Node* crate = new ovui_test::Tracked<Node>(&destroyed);
  crate->name = "crate";
  Child(crate, "abbey", &destroyed);  // a subtree shown for its passing child
  root->Add(crate, 0);
  EXPECT_EQ(Took(events), "item-add ");
  EXPECT_EQ(Shown(root), "crate(abbey) fruit(pear(tab)) box kebab");
  EXPECT_TRUE(root->Remove(0));  // by position in the visible list
  EXPECT_EQ(destroyed, 2);
  vm::ViewModel* jam = root->GetAllItems()[2];
  EXPECT_TRUE(root->Remove(jam));  // hidden: dropped without release
  EXPECT_EQ(destroyed, 2);
  jam->Release();
  EXPECT_TRUE(root->Filter(""));
  EXPECT_EQ(Shown(root), "fruit(pear(seed tab) plum) box kebab pig");

  root->Filter("ab");
  Took(events);
  EXPECT_TRUE(root->Reset());
  EXPECT_EQ(Took(events), "remove-all ");
  EXPECT_EQ(destroyed, 11);
  Child(Child(root, "slab", &destroyed), "x", &destroyed);
  Child(root, "y", &destroyed);
  root->Release();  // shown or hidden, every child exactly once
  root = nullptr;
  EXPECT_EQ(destroyed, 14);
}
