#include "mvvm/menu_data.h"

#include <gtest/gtest.h>

namespace {

vm::MenuData* Entry(const std::string& text, const std::string& command = "") {
  auto* e = new vm::MenuData();
  e->text = text;
  e->command = command;
  return e;
}

}  // namespace

TEST(MenuDataTest, CloneIsDeepAndReplacesChildren) {
  vm::MenuData source;
  source.text = "root";
  source.icon = ":/root.png";
  auto* sub = Entry("More");
  sub->AddChild(Entry("Deep", "deep"));
  source.AddChild(Entry("Open", "open"));
  source.AddChild(sub);

  vm::MenuData copy;
  copy.AddChild(Entry("old"));
  copy.Clone(source);
  ASSERT_EQ(copy.GetChilds().size(), 2u);
  EXPECT_EQ(copy.text, "root");
  EXPECT_EQ(copy.icon, ":/root.png");
  EXPECT_EQ(copy.GetChilds()[0]->command, "open");
  EXPECT_NE(copy.GetChilds()[1], sub);
  ASSERT_EQ(copy.GetChilds()[1]->GetChilds().size(), 1u);
  EXPECT_EQ(copy.GetChilds()[1]->GetChilds()[0]->command, "deep");

  copy.Clone(copy);  // onto itself: unchanged
  EXPECT_EQ(copy.GetChilds().size(), 2u);
  copy.Clone(*copy.GetChilds()[1]);  // from one of its own children
  EXPECT_EQ(copy.text, "More");
  ASSERT_EQ(copy.GetChilds().size(), 1u);
  EXPECT_EQ(copy.GetChilds()[0]->text, "Deep");
}

TEST(MenuDataTest, RemoveAndClearReleaseChildren) {
  vm::MenuData menu;
  auto* kept = Entry("kept");
  kept->AddRef();  // held by the test as well
  menu.AddChild(Entry("a"));
  menu.AddChild(kept);
  EXPECT_FALSE(menu.Remove(static_cast<unsigned>(menu.GetChilds().size())));
  EXPECT_EQ(menu.GetChilds().size(), 2u);
  EXPECT_TRUE(menu.Remove(0));
  EXPECT_EQ(menu.GetChilds()[0], kept);
  menu.Clear();
  EXPECT_TRUE(menu.GetChilds().empty());
  EXPECT_EQ(kept->RefCount(), 1);
  kept->Release();
}
