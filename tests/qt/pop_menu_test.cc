#include "qt/pop_menu.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QPixmap>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <string>
#include <vector>

#include "support/log_capture.h"
#include "support/menus.h"
#include "support/toy_objects.h"

using ovui_test::Describe;
using ovui_test::RightClick;
using ovui_test::ToyCommand;

namespace {

vm::MenuData* Entry(const std::string& text, const std::string& command,
                    const std::string& arg = "", const std::string& icon = "") {
  auto* node = new vm::MenuData();
  node->text = text;
  node->command = command;
  node->command_arg = arg;
  node->icon = icon;
  return node;
}

vm::MenuData* Separator() {
  auto* node = new vm::MenuData();
  node->separator = 1;
  return node;
}

vm::MenuData* Submenu(const std::string& text, const std::vector<vm::MenuData*>& children,
                      const std::string& icon = "") {
  vm::MenuData* node = Entry(text, "never", "", icon);
  for (vm::MenuData* child : children)
    node->AddChild(child);
  return node;
}

// Serves `menu` for the widget named "grid" and records every name asked for.
class MenuViewModel : public vm::ViewModel {
 public:
  bool GetContextMenuData(const std::string& name, vm::MenuData& out) override {
    asked.push_back(name);
    if (name != "grid") return false;
    out.Clone(menu);
    return true;
  }

  ToyCommand* Command(const std::string& command_name, bool enabled = true) {
    auto* command = new ToyCommand();
    command->enabled = enabled;
    RegisterCommand(command_name, command);
    return command;
  }

  vm::MenuData menu;
  std::vector<std::string> asked;
};

}  // namespace

TEST(PopMenuSupportTest, MenuFollowsTheTreeAndRunsTheChosenCommand) {
  ovui_test::TempDir dir;
  const std::string icon = dir.File("open.png");
  QPixmap pixmap(8, 8);
  pixmap.fill(Qt::red);
  ASSERT_TRUE(pixmap.save(QString::fromStdString(icon), "PNG"));

  MenuViewModel vm;
  ToyCommand* open = vm.Command("open");
  ToyCommand* copy = vm.Command("copy");
  ToyCommand* paste = vm.Command("paste");
  vm.Command("delete", false);
  vm.menu.text = "root text is not shown";
  vm.menu.AddChild(Entry("\u00d6ffnen", "open", "n\u00e4chste", icon));
  vm.menu.AddChild(Separator());
  vm.menu.AddChild(Submenu(
      "Edit",
      {Entry("Copy", "copy", "all"), Separator(),
       Submenu("Paste as", {Entry("Text", "paste", "text"), Entry("Delete", "delete")}, icon)}));
  vm.menu.AddChild(Entry("Delete", "delete"));

  QWidget widget;
  widget.setObjectName("grid");
  PopMenuSupport support(&widget, &vm, true);
  EXPECT_EQ(widget.contextMenuPolicy(), Qt::CustomContextMenu);

  QCursor::setPos(120, 90);
  const int opened = RightClick(widget, [&](QMenu& menu) {
    EXPECT_EQ(menu.pos(), QPoint(120, 90));  // at the cursor, not at the click
    const std::vector<std::string> expected = {
        "\u00d6ffnen",  "-",        "Edit >",       "  Copy",  "  -",
        "  Paste as >", "    Text", "    [Delete]", "[Delete]"};
    EXPECT_EQ(Describe(menu), expected);
    const QList<QAction*> top = menu.actions();
    QMenu* edit = top.at(2)->menu();
    QMenu* paste_as = edit->actions().at(2)->menu();
    EXPECT_FALSE(top.at(0)->icon().isNull());
    EXPECT_TRUE(top.at(0)->shortcut().isEmpty());
    EXPECT_TRUE(top.at(3)->icon().isNull());
    EXPECT_TRUE(edit->icon().isNull());
    EXPECT_FALSE(paste_as->icon().isNull());

    // Disabled entries do nothing, by trigger or by click.
    paste_as->actions().at(1)->trigger();
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(top.at(3)).center());
    EXPECT_TRUE(menu.isVisible());

    paste_as->actions().at(0)->trigger();
    edit->actions().at(0)->trigger();
    // A click runs the entry and closes the menu.
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(top.at(0)).center());
    EXPECT_FALSE(menu.isVisible());
  });
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(vm.asked, std::vector<std::string>{"grid"});
  EXPECT_EQ(open->runs, std::vector<std::string>{"n\u00e4chste"});
  EXPECT_EQ(copy->runs, std::vector<std::string>{"all"});
  EXPECT_EQ(paste->runs, std::vector<std::string>{"text"});
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST(PopMenuSupportTest, SeparatorRootAndMissingMenus) {
  MenuViewModel vm;
  vm.menu.separator = 1;
  vm.menu.AddChild(Entry("ignored", "open"));
  QWidget widget;
  widget.setObjectName("grid");
  PopMenuSupport support(&widget, &vm, true);
  EXPECT_EQ(
      RightClick(widget,
                 [](QMenu& menu) { EXPECT_EQ(Describe(menu), std::vector<std::string>{"-"}); }),
      1);

  // No menu under the name, here the empty one: nothing opens.
  QWidget unnamed;
  PopMenuSupport other(&unnamed, &vm, true);
  EXPECT_EQ(RightClick(unnamed), 0);
  QTest::qWait(20);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  EXPECT_EQ(vm.asked, (std::vector<std::string>{"grid", ""}));
}

TEST(PopMenuSupportTest, FirstSupportOfAWidgetServesItsMenu) {
  MenuViewModel first_vm;
  ToyCommand* first = first_vm.Command("run");
  first_vm.menu.AddChild(Entry("Run", "run", "1"));
  MenuViewModel second_vm;
  ToyCommand* second = second_vm.Command("run");
  second_vm.menu.AddChild(Entry("Run", "run", "2"));

  QWidget widget;
  widget.setObjectName("grid");
  PopMenuSupport serving(&widget, &first_vm, true);
  PopMenuSupport silent;
  EXPECT_TRUE(silent.Attach(&widget, &second_vm));
  EXPECT_EQ(silent.GetWidget(), &widget);
  EXPECT_EQ(RightClick(widget, [](QMenu& menu) { menu.actions().at(0)->trigger(); }), 1);
  EXPECT_EQ(first->runs, std::vector<std::string>{"1"});
  EXPECT_TRUE(second->runs.empty());
  EXPECT_TRUE(second_vm.asked.empty());

  // A new view model takes over menu and commands; the connection stays.
  EXPECT_TRUE(serving.SetViewModel(&second_vm));
  EXPECT_EQ(RightClick(widget, [](QMenu& menu) { menu.actions().at(0)->trigger(); }), 1);
  EXPECT_EQ(second->runs, std::vector<std::string>{"2"});
  EXPECT_EQ(first->runs.size(), 1u);
}

TEST(PopMenuSupportTest, WrongUseFailsHarmlessly) {
  MenuViewModel vm;
  vm.menu.AddChild(Entry("Run", "run"));
  QAction action(nullptr);
  PopMenuSupport support;
  EXPECT_FALSE(support.Attach(&action, &vm));
  EXPECT_EQ(support.GetWidget(), nullptr);
  EXPECT_EQ(support.GetViewModel(), &vm);
  EXPECT_FALSE(support.Attach(nullptr, &vm));

  // Built without attaching: keeps the view model, leaves the widget alone.
  QWidget widget;
  widget.setObjectName("grid");
  PopMenuSupport unattached(&widget, &vm, false);
  EXPECT_EQ(unattached.GetWidget(), nullptr);
  EXPECT_EQ(unattached.GetViewModel(), &vm);
  EXPECT_EQ(widget.contextMenuPolicy(), Qt::DefaultContextMenu);
  EXPECT_EQ(RightClick(widget), 0);
  EXPECT_TRUE(vm.asked.empty());

  // The menu slot connected to anything but a menu entry only logs.
  ovui_test::LogCapture log;
  ToyCommand* run = vm.Command("run");
  QPushButton button;
  QObject::connect(&button, SIGNAL(clicked()), &unattached, SLOT(OnMenuAction()));
  button.click();
  EXPECT_TRUE(log.HasFailedCheck("OnMenuAction", "act != NULL"));
  log.Clear();
  unattached.OnMenuAction();  // no sender at all
  EXPECT_TRUE(log.HasFailedCheck("OnMenuAction", "act != NULL"));
  EXPECT_TRUE(run->runs.empty());
}

TEST(PopMenuSupportTest, Lifetimes) {
  MenuViewModel vm;
  vm.menu.AddChild(Entry("Run", "run"));
  QWidget widget;
  widget.setObjectName("grid");
  auto* support = new PopMenuSupport(&widget, &vm, true);
  delete support;
  EXPECT_EQ(RightClick(widget), 0);
  EXPECT_TRUE(vm.asked.empty());

  // A command may destroy the widget, and the menu with it, while the menu is open.
  struct Closing : vm::ICommand {
    bool CanExecute(const std::string&) override { return true; }
    bool Execute(const std::string&) override {
      delete window;
      window = nullptr;
      return true;
    }
    QWidget* window = nullptr;
  };
  auto* close = new Closing();
  vm.RegisterCommand("close", close);
  vm.menu.AddChild(Entry("Close", "close"));
  QPointer<QWidget> window = new QWidget();
  window->setObjectName("grid");
  close->window = window;
  PopMenuSupport closing(window, &vm, true);
  EXPECT_EQ(RightClick(*window, [](QMenu& menu) { menu.actions().at(1)->trigger(); }), 1);
  EXPECT_TRUE(window.isNull());
}
