#include "mvvm/view_model_tree_ext.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/log_capture.h"
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
    seed = Child(pear, "seed");
    Child(pear, "tab");
    plum = Child(fruit, "plum");
    box = Child(root, "box");
    jam = Child(root, "jam");
    Child(root, "kebab");
    for (const char* type : {"before-filtered", "filtered", "item-add", "item-remove",
                             "before-remove-all", "remove-all"})
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
  Node *pear = nullptr, *seed = nullptr, *plum = nullptr, *box = nullptr, *jam = nullptr;
};

}  // namespace

TEST_F(TreeTest, RootLendsTheSelectedNodeAndAnnouncesEveryWrite) {
  root->On("prop-changed", &heard);
  EXPECT_TRUE(pear->SetPropW("name", base::Value("pea")));
  EXPECT_EQ(heard.events.back(), "prop-changed:kind=PropChange name=name old=pea value=pea ");
  base::Value v;
  EXPECT_TRUE(root->SetPropW("name", base::Value("kebap")));
  EXPECT_TRUE(root->GetPropW("name", v));
  EXPECT_STREQ(v.Str(), "kebap");  // "kebab", selected last, lends its property

  auto* list = new vm::ViewModelArray();
  list->Add(root);                     // a tree under a plain list is its own root
  EXPECT_TRUE(root->HasProp("name"));  // the list selected the tree: nothing lent
  Node* pip = Child(pear, "pip");      // selected in the list too
  EXPECT_TRUE(root->IsTreeRoot());
  EXPECT_FALSE(pear->IsTreeRoot());
  EXPECT_EQ(pip->GetRoot(), root);
  // Lends nothing for reading, but writes through.
  EXPECT_TRUE(root->GetPropW("name", v));
  EXPECT_TRUE(root->SetPropW("name", base::Value("x")));
  EXPECT_EQ(v.Str() + pip->name, "rootx");
  list->Release();
  root = nullptr;
}

// Filters incrementally only while the rule grows; adds under a filter show
// what passes, with its path.
TEST_F(TreeTest, FiltersIncrementallyAndAddsShowWhatPasses) {
  const char* const steps[][3] = {
      // rule, nodes tried, tree left
      {"a", "root fruit pear seed tab plum box jam kebab ", "(fruit(pear(tab)))(jam)(kebab)"},
      {"ab", "root fruit pear tab jam kebab ", "(fruit(pear(tab)))(kebab)"},  // what "a" left
      {"b", "root fruit pear seed tab plum box jam kebab ", "(fruit(pear(tab)))(box)(kebab)"}};
  for (const auto& [rule, tried, shown] : steps) {
    root->visited.clear();
    heard.events.clear();
    EXPECT_TRUE(root->Filter(rule));
    EXPECT_EQ(root->visited, tried) << rule;
    EXPECT_EQ(root->Shown(), shown) << rule;
    EXPECT_EQ(heard.events, (Strings{"before-filtered:", "filtered:"})) << rule;
  }
  heard.events.clear();
  EXPECT_TRUE(root->Filter("b"));
  EXPECT_TRUE(heard.events.empty());  // the rule in force: nothing happens
  Child(root, "pig");                 // fails: added silently
  root->Add(Child(Child(nullptr, "crate"), "abbey")->GetParent(), 0);  // shown for "abbey"
  EXPECT_EQ(heard.events.size(), 1u);

  // Under hidden nodes: the child's own event, then each ancestor's, innermost first.
  Child(plum, "bean");
  Child(seed, "bud");
  EXPECT_EQ(heard.events.size(), 5u);
  Child(jam, "cob");  // "jam" comes back between "box" and "kebab"
  EXPECT_EQ(root->Shown(),
            "(crate(abbey))(fruit(pear(seed(bud))(tab))(plum(bean)))(box)(jam(cob))(kebab)");
  EXPECT_EQ(root->IndexOf(jam), 3);
}

// A hidden node removed goes back to the caller unreleased and unselected; a
// shown one that takes the last passing leaf with it hides its ancestors.
TEST_F(TreeTest, RemovesUnderAFilterHideWhatNoLongerHasAPassingDescendant) {
  root->SetCurrent(static_cast<unsigned>(root->IndexOf(jam)));
  root->Filter("ta");
  ASSERT_EQ(root->GetCurrentViewModel(), jam);
  heard.events.clear();
  EXPECT_TRUE(root->Remove(jam));  // hidden: no release, no event
  EXPECT_EQ(root->GetCurrentViewModel(), nullptr);
  EXPECT_EQ(jam->GetParent(), root);
  EXPECT_FALSE(destroyed);
  jam->Release();
  base::Value v;
  EXPECT_FALSE(root->GetPropW("missing", v));  // reads no freed node
  EXPECT_TRUE(pear->Remove(0));  // "tab": "pear" and "fruit" go out of view, innermost first
  EXPECT_EQ(heard.events.size(), 3u);
  EXPECT_EQ(root->Shown(), "");
  EXPECT_EQ(destroyed, 2);
  Child(pear, "stab");  // and come back with a new passing leaf
  EXPECT_EQ(root->Shown(), "(fruit(pear(stab)))");
  EXPECT_TRUE(root->Filter(""));
  EXPECT_EQ(root->Shown(), "(fruit(pear(seed)(stab))(plum))(box)(kebab)");
}

TEST_F(TreeTest, ResetsAndDestructionReleaseEveryNodeOnce) {
  ovui_test::LogCapture log;
  EXPECT_FALSE(root->Add(box));  // already a child
  EXPECT_TRUE(log.HasFailedCheck("AddWithoutSetCurrent",
                                 "item->GetParent() != this || !Contains(this->all_items, item)"));
  root->Filter("ab");
  heard.events.clear();
  EXPECT_TRUE(root->Reset());
  EXPECT_EQ(heard.events, Strings{"remove-all:parent= "});  // no "before-remove-all"
  EXPECT_EQ(destroyed, 8);
  Child(Child(root, "slab"), "x");
  root->Release();
  root = nullptr;            // shown or hidden, every child exactly once
  EXPECT_EQ(destroyed, 11);  // and the root
}
