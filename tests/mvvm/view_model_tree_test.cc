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
    Child(pear, "seed");
    Child(pear, "tab");
    Child(fruit, "plum");
    Child(root, "box");
    Child(root, "jam");
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
  Node* Find(const std::string& name, Node* from = nullptr) {  // shown or not
    for (vm::ViewModel* item : (from ? from : root)->GetAllItems()) {
      auto* node = static_cast<Node*>(item);
      if (node->name == name) return node;
      if (Node* below = Find(name, node)) return below;
    }
    return nullptr;
  }
  // The item events heard, as "item-add fruit" (the parent's name).
  Strings ItemEvents() const {
    Strings out;
    for (const std::string& e : heard.events)
      if (e.rfind("item-", 0) == 0) out.push_back(e.substr(0, e.find(':')));
    return out;
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
  EXPECT_TRUE(root->GetPropW("name", v));
  EXPECT_TRUE(root->SetPropW("name", base::Value("x")));
  EXPECT_STREQ(v.Str(), "root");  // lends nothing for reading, but writes through
  EXPECT_EQ(pip->name, "x");
  list->Release();
  root = nullptr;
}

TEST_F(TreeTest, FiltersIncrementallyOnlyWhileTheRuleGrows) {
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
  EXPECT_TRUE(root->Filter("b"));  // the rule in force: nothing happens
  EXPECT_TRUE(heard.events.empty());
  EXPECT_TRUE(root->Filter(""));
  EXPECT_EQ(root->Shown(), "(fruit(pear(seed)(tab))(plum))(box)(jam)(kebab)");
}

TEST_F(TreeTest, AddsUnderAFilterShowWhatPassesWithItsPath) {
  root->Filter("b");
  heard.events.clear();
  Child(root, "pig");  // fails: added silently
  EXPECT_TRUE(heard.events.empty());
  root->Add(Child(Child(nullptr, "crate"), "abbey")->GetParent(), 0);  // shown for "abbey"
  EXPECT_EQ(ItemEvents(), Strings{"item-add"});
  EXPECT_EQ(root->Shown(), "(crate(abbey))(fruit(pear(tab)))(box)(kebab)");

  // Under hidden nodes: the child's own event, then each ancestor's, innermost first.
  heard.events.clear();
  Node* plum = Find("plum");
  Child(plum, "bean");
  Child(Find("seed"), "bud");
  EXPECT_EQ(ItemEvents(), (Strings{"item-add", "item-add", "item-add", "item-add"}));
  EXPECT_EQ(root->Shown(), "(crate(abbey))(fruit(pear(seed(bud))(tab))(plum(bean)))(box)(kebab)");
  Child(Find("jam"), "cob");  // "jam" comes back between "box" and "kebab"
  EXPECT_EQ(root->Shown(),
            "(crate(abbey))(fruit(pear(seed(bud))(tab))(plum(bean)))(box)(jam(cob))(kebab)");
  EXPECT_EQ(root->IndexOf(Find("jam")), 3);
}

TEST_F(TreeTest, RemovesUnderAFilterHideWhatNoLongerHasAPassingDescendant) {
  root->Filter("ta");  // (fruit(pear(tab)))
  ASSERT_EQ(root->Shown(), "(fruit(pear(tab)))");
  heard.events.clear();
  EXPECT_TRUE(pear->Remove(0));  // "tab": "pear" and "fruit" go out of view, innermost first
  EXPECT_EQ(ItemEvents(), (Strings{"item-remove", "item-remove", "item-remove"}));
  EXPECT_EQ(root->Shown(), "");
  EXPECT_EQ(destroyed, 1);
  Node* stab = Child(pear, "stab");  // and come back with a new passing leaf
  EXPECT_EQ(root->Shown(), "(fruit(pear(stab)))");
  Child(root, "tack");
  EXPECT_TRUE(pear->Remove(stab));
  EXPECT_EQ(root->Shown(), "(tack)");
  EXPECT_TRUE(root->Filter(""));
  EXPECT_EQ(root->Shown(), "(fruit(pear(seed))(plum))(box)(jam)(kebab)(tack)");
}

TEST_F(TreeTest, AHiddenNodeRemovedGoesBackToTheCallerUnselected) {
  Node* jam = Find("jam");
  root->SetCurrent(static_cast<unsigned>(root->IndexOf(jam)));
  root->Filter("b");
  ASSERT_EQ(root->GetCurrentViewModel(), jam);
  EXPECT_TRUE(root->Remove(jam));  // hidden: dropped without release or events
  EXPECT_EQ(root->GetCurrentViewModel(), nullptr);
  EXPECT_EQ(jam->GetParent(), root);
  EXPECT_EQ(destroyed, 0);
  base::Value v;
  EXPECT_FALSE(root->GetPropW("missing", v));  // reads no freed node
  jam->Release();
  EXPECT_EQ(destroyed, 1);
}

TEST_F(TreeTest, ResetsAndDestructionReleaseEveryNodeOnce) {
  ovui_test::LogCapture log;
  Node* box = Find("box");
  EXPECT_FALSE(root->Add(box));  // already a child
  EXPECT_TRUE(log.HasFailedCheck("AddWithoutSetCurrent",
                                 "item->GetParent() != this || !Contains(this->all_items, item)"));
  root->Filter("ab");
  heard.events.clear();
  EXPECT_TRUE(root->Reset());
  EXPECT_EQ(heard.events, Strings{"remove-all:parent= "});  // no "before-remove-all"
  EXPECT_EQ(destroyed, 8);
  Child(Child(root, "slab"), "x");
  Child(root, "y");
  root->Release();
  root = nullptr;            // shown or hidden, every child exactly once
  EXPECT_EQ(destroyed, 12);  // and the root
}
