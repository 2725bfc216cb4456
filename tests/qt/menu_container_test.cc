#include "qt/menu_container.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QPointer>
#include <QTest>

#include "mvvm/navigator.h"
#include "qt/binding_context.h"
#include "qt/menu_container_dialog.h"
#include "qt/push_button_ex.h"
#include "support/toy_objects.h"
#include "support/ui_files.h"

namespace {

using Strings = std::vector<std::string>;
const char kTick[] = ":/ccheckcombox/images/check.png";
const std::vector<MenuContainerItemIcon> kIcons{{kTick, "yes"}, {kTick, "no"}, {kTick, "maybe"}};

struct Settings : vm::ViewModel {
  Settings() {
    InstallProp("menu", &Settings::GetMenu, nullptr);
    InstallProp("mcix_selected", &selected);
    InstallProp("sound", &sound);
    InstallProp("theme", &theme);
    InstallProp("quality", &quality);
    InstallProp("colour", &colour);
    RegisterCommand("reset", reset);
    // Seven settings on two pages of six buttons (five items and "More").
    menu->attributes = {{"number_per_page", "6"}, {"bt_next", "More "}, {"bt_w", "260"},
                        {"bt_h", "40"},           {"bt_gap", "2"},      {"auto_fix_size", "True"}};
    menu->AddSwitch("Sound", "sound", "On", "Off");
    menu->AddSwitch("Theme", kIcons, "theme");
    menu->AddTextDlg("Quality", {"Low", "Medium", "High", "Ultra"}, "quality", 2);
    menu->AddIconDlg("Colour", kIcons, "colour", 3);
    menu->AddUserDlg("Account", "", "test_account");
    menu->AddCommand("Reset", "reset", "all", "");
    menu->AddBlank();
  }
  ~Settings() override { menu->Release(); }
  bool GetMenu(base::Value& v) const {
    v.Pointer(menu);
    return true;
  }

  MenuContainerItem* menu = new MenuContainerItem();
  int selected = -1, theme = 0, quality = 1, colour = 0;
  bool sound = false;
  ovui_test::ToyCommand* reset = new ovui_test::ToyCommand();
};

struct MenuContainerTest : testing::Test {
  MenuContainerTest() { container->setProperty("binding.value", "{Binding Path=menu}"); }
  void Bind() {
    vm::BindingContext::CreateAndBind(window.get(), &settings);
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  }
  QPushButtonEx* Button(int i) const { return container->button(i); }
  void Click(int i) const { QTest::mouseClick(Button(i), Qt::LeftButton); }
  QPointer<MenuContainerDialog> Open(int i) const {
    Click(i);
    return qobject_cast<MenuContainerDialog*>(container->currentDialog());
  }
  Strings Texts() const {
    Strings texts;
    for (int i = 0; i < CMenuContainer::kButtonCount && Button(i)->isVisibleTo(container); ++i)
      texts.push_back(Button(i)->text().toStdString());
    return texts;
  }

  Settings settings;
  std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
  CMenuContainer* container = new CMenuContainer(window.get());
};

// Answers a made-up target with a window of its own, as a settings dialog would.
struct AccountHandler : vm::NavigatorHandler {
  AccountHandler() : vm::NavigatorHandler("test_account") {}
  bool OnRequest(vm::NavigatorRequest* request) override {
    window.show();
    request->params["target"] = base::Value(static_cast<void*>(&window));
    return true;
  }
  QWidget window;
};

TEST_F(MenuContainerTest, PagesFollowTheSelectionAndItemsActOnClicks) {
  AccountHandler account;
  settings.selected = 5;
  Bind();
  EXPECT_EQ(container->page(), 1);
  EXPECT_EQ(container->currentButton(), nullptr);
  EXPECT_TRUE(QTest::qWaitFor([&] { return container->currentButton() == Button(0); }, 1000));
  settings.SetPropW("mcix_selected", base::Value(1));
  EXPECT_EQ(container->page(), 0);
  EXPECT_TRUE(settings.reset->runs.empty());  // chosen, not clicked
  EXPECT_EQ(settings.theme, 0);
  EXPECT_EQ(Texts(), (Strings{"Sound", "Theme", "Quality", "Colour", "Account", "More (1/2)"}));
  EXPECT_EQ(Button(1)->geometry(), QRect(0, 42, 260, 40));
  Click(0);
  EXPECT_TRUE(settings.sound);
  EXPECT_EQ(settings.selected, 0);
  Click(1);
  Click(1);
  EXPECT_EQ(settings.theme, 2);
  Click(1);
  EXPECT_EQ(Button(1)->valueText(), "yes");    // wrapped
  settings.SetPropW("theme", base::Value(7));  // no such icon
  EXPECT_TRUE(Button(1)->valueIcon().isNull());
  Click(4);
  EXPECT_EQ(container->currentDialog(), &account.window);
  Click(5);
  EXPECT_FALSE(account.window.isVisible());  // the page turned
  EXPECT_EQ(Texts(), (Strings{"Reset", "", "", "", "", "More (2/2)"}));
  EXPECT_FALSE(Button(1)->isEnabled());  // the blank item
  Click(0);
  EXPECT_EQ(settings.reset->runs, (Strings{"all"}));
  Click(5);
  EXPECT_EQ(container->page(), 0);

  // Option dialogs write what is chosen; a click outside closes one without.
  QPointer<MenuContainerDialog> dialog = Open(2);
  ASSERT_NE(dialog, nullptr);
  QTest::mouseClick(dialog->optionButton(3), Qt::LeftButton);
  EXPECT_FALSE(dialog && dialog->isVisible());
  EXPECT_EQ(settings.quality, 3);
  EXPECT_EQ(Button(2)->valueText(), "Ultra");
  dialog = Open(3);
  QTest::mouseClick(dialog->optionButton(2), Qt::LeftButton);
  dialog = Open(3);
  QTest::mouseClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(290, 290));
  EXPECT_TRUE(!dialog || !dialog->isVisible());
  EXPECT_EQ(settings.colour, 2);

  // One item a page without the attribute; never more a page than there are buttons.
  settings.menu->attributes.erase("number_per_page");
  settings.EmitPropsChange();
  EXPECT_EQ(Texts(), (Strings{"Colour", "More (4/7)"}));  // still on the chosen item
  settings.menu->SetAttribute("number_per_page", "40");
  for (int i = 0; i < 30; ++i)
    settings.menu->AddBlank();
  settings.EmitPropsChange();
  EXPECT_EQ(Texts().size(), 25u);
}

TEST_F(MenuContainerTest, BindsFromADesignerFormOutlivesItsViewModelAndGoesFirst) {
  window = ovui_test::LoadUi<CMenuContainer>("menu_container_form.ui", "CMenuContainer");
  ASSERT_NE(window, nullptr);
  container = window->findChild<CMenuContainer*>("menu");
  Bind();
  Click(0);
  EXPECT_TRUE(settings.sound);
  ASSERT_NE(Open(2), nullptr);
  window.reset();  // the dialog goes with the container

  auto* other = new Settings();
  auto* alone = new CMenuContainer();
  alone->setProperty("binding.value", "{Binding Path=menu}");
  alone->bindToVm(other);
  other->Release();  // the container keeps it alive
  QTest::mouseClick(alone->button(0), Qt::LeftButton);
  EXPECT_TRUE(other->sound);
  delete alone;
}

TEST(MenuContainerItem, ClonesDeeplyAndComparesEveryLevel) {
  MenuContainerItem root, copy;
  root.AddCommand("c", "cmd", "arg", "")->AddIconDlg("y", {{"a.png", "a"}}, "p", 12);
  copy.Clone(root);
  copy.Clone(root);  // over the old copy
  EXPECT_TRUE(copy.IsSame(root));
  copy.GetChilds()[0]->GetChilds()[0]->icons[0].icon = "b.png";
  EXPECT_FALSE(copy.IsSame(root));
}

TEST(MenuContainerFrame, StaysOnTheScreenOfItsAnchor) {
  // A 90x40 anchor's x, y, then a 200x100 frame's on an 800x600 screen: below, above, pushed on.
  const int cases[][4] = {
      {50, 100, 50, 140}, {50, 500, 50, 400}, {700, 100, 600, 140}, {-30, 100, 0, 140}};
  for (const auto& c : cases)
    EXPECT_EQ(MenuContainerFrame::Place({c[0], c[1], 90, 40}, {200, 100}, {0, 0, 800, 600}),
              QPoint(c[2], c[3]));
}

}  // namespace
