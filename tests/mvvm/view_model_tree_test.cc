#include "mvvm/view_model_tree_ext.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/recording_listener.h"
#include "support/toy_objects.h"

using Strings = std::vector<std::string>;

namespace {

// Named by "name"; a rule matches part of the name. Notes each node tried in `visited`.
struct Node : vm::ViewModelTreeExt {
  Node() { InstallProp("name", &this->name); }
  bool FilterOne(vm::ViewModel* node, const std::string& rule) override {
    visited += static_cast<Node*>(node)->name + " ";
    return static_cast<Node*>(node)->name.find(rule) != std::string::npos;
  }
  std::string Shown() {  // the visible tree below, as "(name(child)(child))(name)"
    std::string out;
    for (vm::ViewModel* item : GetItems())
      out += "(" + static_cast<Node*>(item)->name + static_cast<Node*>(item)->Shown() + ")";
    return out;
  }
  std::string name, visited;
};

// root: (fruit(pear(seed)(tab))(plum))(box)(jam)(kebab), "kebab" selected last.
struct TreeTest : testing::Test {
  TreeTest() {
    Node* fruit = Child(root, "fruit");
    pear = Child(fruit, "pear");
    Child(pear, "seed"), Child(pear, "tab"), Child(fruit, "plum");
    Child(root, "box"), Child(root, "jam"), Child(root, "kebab");
    for (const char* type :
         {"before-filtered", "filtered", "item-add", "before-remove-all", "remove-all"})
      root->On(type, &heard);
  }
  ~TreeTest() override { base::SafeRelease(root); }
  Node* Child(vm::ViewModelArray* parent, const char* name) {  // added unless `parent` is null
    Node* node = new ovui_test::Tracked<Node>(&destroyed);
    node->name = name;
    return !parent || parent->Add(node) ? node : nullptr;
  }
  int destroyed = 0;
  ovui_test::RecordingListener heard;  // outlives the tree, which holds a reference
  Node* root = Child(nullptr, "root");
  Node* pear = nullptr;
};

}  // namespace

TEST_F(TreeTest, RootLendsTheSelectedNodeAndAnnouncesEveryWrite) {
  root->On("prop-changed", &heard);
  EXPECT_TRUE(pear->SetPropW("name", base::Value("pea")));
  EXPECT_EQ(heard.events.back(), "prop-changed:kind=PropChange name=name old=pea value=pea ");
  base::Value v;
  EXPECT_TRUE(root->SetPropW("name", base::Value("kebap")) && root->GetPropW("name", v));
  EXPECT_STREQ(v.Str(), "kebap");  // "kebab", selected last, lends its property

  (new vm::ViewModelArray())->Add(root);  // a tree under a plain list is its own root
  EXPECT_TRUE(root->HasProp("name"));     // the list selected the tree: nothing lent
  Node* pip = Child(pear, "pip");         // selected in the list too
  EXPECT_TRUE(root->IsTreeRoot() && !pear->IsTreeRoot() && pip->GetRoot() == root);
  EXPECT_TRUE(root->GetPropW("name", v) && root->SetPropW("name", base::Value("x")));
  EXPECT_STREQ(v.Str(), "root");  // lends nothing for reading, but writes through
  EXPECT_EQ(pip->name, "x");
  root->GetParent()->Release(), root = nullptr;  // with the list
}

TEST_F(TreeTest, FiltersIncrementallyAndKeepsAddsRemovesAndResetsInStep) {
  const char* const steps[][3] = {
      // rule, nodes tried, tree left
      {"a", "root fruit pear seed tab plum box jam kebab ", "(fruit(pear(tab)))(jam)(kebab)"},
      {"ab", "root fruit pear tab jam kebab ", "(fruit(pear(tab)))(kebab)"},  // what "a" left
      {"b", "root fruit pear seed tab plum box jam kebab ", "(fruit(pear(tab)))(box)(kebab)"}};
  for (const auto& [rule, tried, shown] : steps) {
    root->visited.clear(), heard.events.clear();
    EXPECT_TRUE(root->Filter(rule));
    EXPECT_EQ(root->visited, tried) << rule;
    EXPECT_EQ(root->Shown(), shown) << rule;
    EXPECT_EQ(heard.events, (Strings{"before-filtered:", "filtered:"})) << rule;
  }
  heard.events.clear();
  EXPECT_TRUE(root->Filter("b"));  // the rule in force: nothing happens
  Child(root, "pig");              // fails: added silently
  root->Add(Child(Child(nullptr, "crate"), "abbey")->GetParent(), 0);  // shown for "abbey"
  EXPECT_EQ(heard.events, Strings{"item-add:end=0 item= parent= start=0 "});
  EXPECT_EQ(root->Shown(), "(crate(abbey))(fruit(pear(tab)))(box)(kebab)");
  vm::ViewModel* jam = root->GetAllItems()[3];
  EXPECT_TRUE(root->Remove(jam) && root->Remove(0));  // hidden; and by visible position
  EXPECT_EQ(destroyed, 2);  // "crate" and "abbey": "jam" was dropped without release
  jam->Release();
  EXPECT_TRUE(root->Filter(""));
  EXPECT_EQ(root->Shown(), "(fruit(pear(seed)(tab))(plum))(box)(kebab)(pig)");

  root->Filter("ab"), heard.events.clear();
  EXPECT_TRUE(root->Reset());
  EXPECT_EQ(heard.events, Strings{"remove-all:parent= "});  // no "before-remove-all"
  EXPECT_EQ(destroyed, 11);
  Child(Child(root, "slab"), "x"), Child(root, "y");
  root->Release(), root = nullptr;  // shown or hidden, every child exactly once
  EXPECT_EQ(destroyed, 15);         // and the root
}
