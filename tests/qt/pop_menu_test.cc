#include "qt/pop_menu.h"

#include <gtest/gtest.h>

#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include "support/log_capture.h"
#include "support/menus.h"
#include "support/toy_objects.h"

using ovui_test::RightClick;
using ovui_test::ToyCommand;

namespace {

// An entry whose argument is its text, a separator for "-", or a submenu.
vm::MenuData* Entry(const std::string& text, const std::string& command = "",
                    const std::vector<vm::MenuData*>& children = {}) {
  auto* node = new vm::MenuData();
  node->text = text;
  node->command = command;
  node->command_arg = text;
  node->separator = text == "-" ? 1 : 0;
  for (vm::MenuData* child : children)
    node->AddChild(child);
  return node;
}

// Serves `menu` for the widget named "grid" and records every name asked for.
struct MenuViewModel : vm::ViewModel {
  bool GetContextMenuData(const std::string& name, vm::MenuData& out) override {
    asked.push_back(name);
    if (name != "grid") return false;
    out.Clone(menu);
    return true;
  }
  vm::MenuData menu;
  std::vector<std::string> asked;
};

}  // namespace

TEST(PopMenuSupportTest, MenuFollowsTheTreeAndOutlivesNothing) {
  // Runs every entry; "Close" deletes the widget and the open menu with it.
  struct Command : ToyCommand {
    bool Execute(const std::string& arg) override {
      if (arg == "Close") delete window;
      return ToyCommand::Execute(arg);
    }
    QWidget* window = new QWidget();
  };
  auto* command = new Command();
  MenuViewModel vm;
  vm.RegisterCommand("run", command);
  for (vm::MenuData* entry :
       {Entry("Open", "run"), Entry("-"),
        Entry("Edit", "", {Entry("-"), Entry("More", "", {Entry("Again", "run")})}),
        Entry("Off", "unknown"), Entry("Close", "run")})
    vm.menu.AddChild(entry);
  QPointer<QWidget> window = command->window;
  window->setObjectName("grid");
  PopMenuSupport support(window, &vm, true);
  PopMenuSupport second(window, &vm, true);  // reports success, stays silent
  const int opened = RightClick(*window, [](QMenu& menu) {
    EXPECT_EQ(ovui_test::Describe(menu),
              (std::vector<std::string>{"Open", "-", "Edit >", "  -", "  More >", "    Again",
                                        "[Off]", "Close"}));
    const QList<QAction*> top = menu.actions();
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(top.at(3)).center());
    EXPECT_TRUE(menu.isVisible());  // a disabled entry does nothing
    top.at(2)->menu()->actions().at(1)->menu()->actions().at(0)->trigger();
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(top.at(0)).center());
    EXPECT_FALSE(menu.isVisible());  // ran and closed
  });
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(command->runs, (std::vector<std::string>{"Again", "Open"}));

  QWidget unnamed;  // no menu without data, nor from a support deleted first
  PopMenuSupport other(&unnamed, &vm, true);
  EXPECT_EQ(RightClick(unnamed), 0);
  QWidget grid;
  grid.setObjectName("grid");
  delete new PopMenuSupport(&grid, &vm, true);
  EXPECT_EQ(RightClick(grid), 0);
  EXPECT_EQ(vm.asked, (std::vector<std::string>{"grid", ""}));

  ovui_test::LogCapture log;  // the menu slot called by anything but an entry only logs
  QPushButton button;
  QObject::connect(&button, SIGNAL(clicked()), &support, SLOT(OnMenuAction()));
  button.click();
  EXPECT_TRUE(log.HasFailedCheck("OnMenuAction", "act != NULL"));

  EXPECT_EQ(RightClick(*window, [](QMenu& menu) { menu.actions().last()->trigger(); }), 1);
  EXPECT_TRUE(window.isNull());
}
