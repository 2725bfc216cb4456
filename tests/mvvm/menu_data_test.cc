#include "mvvm/menu_data.h"

#include <gtest/gtest.h>

#include <vector>

// Shared entries would be released twice, which the sanitizers report.
TEST(MenuDataTest, CloneIsDeepAndReplacesChildrenEvenFromItsOwnChild) {
  vm::MenuData source, copy;
  auto *sub = new vm::MenuData(), *deep = new vm::MenuData();
  source.text = "root";
  sub->text = "More";
  sub->icon = "i";
  deep->command = "deep";
  sub->AddChild(deep);
  source.AddChild(sub);
  copy.AddChild(new vm::MenuData());
  copy.Clone(source);
  copy.Clone(copy);  // onto itself: nothing happens
  ASSERT_EQ(copy.GetChilds().size(), 1u);
  EXPECT_NE(copy.GetChilds()[0], sub);
  EXPECT_EQ(copy.text, "root");
  copy.Clone(*copy.GetChilds()[0]);
  EXPECT_EQ(copy.text + copy.icon + copy.GetChilds().at(0)->command, "Moreideep");
}

TEST(MenuDataTest, RemoveAndClearReleaseChildren) {
  vm::MenuData menu;
  auto* kept = new vm::MenuData();
  kept->AddRef();  // held by the test as well
  menu.AddChild(new vm::MenuData());
  menu.AddChild(kept);
  EXPECT_FALSE(menu.Remove(2));  // out of range
  EXPECT_TRUE(menu.Remove(0));
  EXPECT_EQ(menu.GetChilds(), std::vector<vm::MenuData*>{kept});
  menu.Clear();
  EXPECT_EQ(kept->RefCount(), 1);
  kept->Release();
}
