#include "qt/menu_container.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QPointer>
#include <QTest>
#include <QUiLoader>
#include <memory>
#include <string>
#include <vector>

#include "mvvm/navigator.h"
#include "qt/binding_context.h"
#include "qt/menu_container_dialog.h"
#include "qt/push_button_ex.h"
#include "qt/widget_binder.h"
#include "support/log_capture.h"
#include "support/toy_objects.h"

namespace {

using Icons = std::vector<MenuContainerItemIcon>;

// Three round pictures of the given colours, written as PNG files.
Icons Pictures(const ovui_test::TempDir& dir, const std::vector<std::string>& colours) {
  Icons icons;
  for (const std::string& colour : colours) {
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setBrush(QColor(QString::fromStdString(colour)));
    p.setPen(Qt::NoPen);
    p.drawEllipse(3, 3, 26, 26);
    p.end();
    const std::string path = dir.File(colour + ".png");
    pixmap.save(QString::fromStdString(path));
    icons.push_back({path, colour});
  }
  return icons;
}

// Nine settings on two pages of six buttons (five items and "More").
MenuContainerItem* SettingsMenu(const Icons& icons) {
  auto* root = new MenuContainerItem();
  root->SetAttribute("number_per_page", "6");
  root->SetAttribute("bt_next", "More ");
  root->SetAttribute("bt_w", "260");
  root->SetAttribute("bt_h", "40");
  root->SetAttribute("bt_gap", "2");
  root->SetAttribute("select_bk", "#cde6ff");
  root->SetAttribute("auto_fix_size", "True");
  root->AddSwitch("Sound", "sound", "On", "Off");
  root->AddSwitch("Theme", icons, "theme");
  root->AddTextDlg("Quality", {"Low", "Medium", "High", "Ultra"}, "quality", 2);
  root->AddIconDlg("Colour", icons, "colour", 3);
  root->AddCommand("Reset", "reset", "all", "");
  root->AddUserDlg("Account", "", "test_account");
  root->AddEdit("Name", "name", "test_edit");
  root->AddBlank();
  root->AddSwitch("Vibrate", "vibrate", "On", "Off");
  return root;
}

struct Settings : vm::ViewModel {
  Settings() {
    InstallProp("menu", &Settings::GetMenu, &Settings::SetMenu);
    InstallProp("mcix_selected", &selected);
    InstallProp("sound", &sound);
    InstallProp("vibrate", &vibrate);
    InstallProp("theme", &theme);
    InstallProp("quality", &quality);
    InstallProp("colour", &colour);
    InstallProp("name", &name);
    RegisterCommand("reset", reset);
  }
  ~Settings() override { base::SafeRelease(menu); }
  bool GetMenu(base::Value& v) const {
    v.Pointer(menu);
    return true;
  }
  // Takes over the tree it is given.
  bool SetMenu(const base::Value& v) {
    base::SafeRelease(menu);
    menu = static_cast<MenuContainerItem*>(v.Pointer());
    return true;
  }
  void Show(MenuContainerItem* tree) { SetPropW("menu", base::Value(static_cast<void*>(tree))); }

  MenuContainerItem* menu = nullptr;
  int selected = -1;
  bool sound = false;
  bool vibrate = false;
  int theme = 0;
  int quality = 1;
  int colour = 0;
  std::string name = "Ada";
  ovui_test::ToyCommand* reset = new ovui_test::ToyCommand();
};

// Answers a made-up target with a plain window of its own, as an
// application's settings dialog would.
struct AccountHandler : vm::NavigatorHandler {
  AccountHandler() : vm::NavigatorHandler("test_account") {}
  bool OnRequest(vm::NavigatorRequest* request) override {
    params = request->params;
    window = new QWidget();
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->show();
    request->params["target"] = base::Value(static_cast<void*>(window.data()));
    request->params["target_vm"] = base::Value(static_cast<void*>(&window_vm));
    return true;
  }
  std::map<std::string, base::Value> params;
  QPointer<QWidget> window;
  vm::ViewModel window_vm;
};

// An editor that types a new value without showing anything.
struct EditHandler : vm::NavigatorHandler {
  EditHandler() : vm::NavigatorHandler("test_edit") {}
  bool OnRequest(vm::NavigatorRequest* request) override {
    auto* vm = static_cast<vm::ViewModel*>(request->params["parent_vm"].Pointer());
    return vm->SetPropW(request->params["prop"].Str(), base::Value("Grace"));
  }
};

// A closed pop-up goes with the next round of the event loop.
template <typename T>
bool Gone(const QPointer<T>& widget) {
  return QTest::qWaitFor([&] { return widget.isNull(); }, 1000);
}

std::string Screenshot(QWidget* widget, const char* name) {
  const QString dir = QCoreApplication::applicationDirPath() + "/screens";
  QDir().mkpath(dir);
  const QString path = dir + "/" + name;
  EXPECT_TRUE(widget->grab().save(path));
  return path.toStdString();
}

struct MenuContainerTest : testing::Test {
  MenuContainerTest() {
    settings->Show(SettingsMenu(icons));
    window->resize(300, 300);
    container = new CMenuContainer(window.get());
    container->move(20, 20);
    container->setProperty("binding.value", "{Binding Path=menu}");
  }
  ~MenuContainerTest() override {
    window.reset();
    settings->Release();
  }
  void Bind() {
    vm::BindingContext::CreateAndBind(window.get(), settings);
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  }
  QPushButtonEx* Button(int i) const { return container->button(i); }
  void Click(int i) const { QTest::mouseClick(Button(i), Qt::LeftButton); }
  MenuContainerDialog* Dialog() const {
    return qobject_cast<MenuContainerDialog*>(container->currentDialog());
  }
  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (int i = 0; i < CMenuContainer::kButtonCount && Button(i)->isVisibleTo(container); ++i)
      texts.push_back(Button(i)->text().toStdString());
    return texts;
  }

  ovui_test::TempDir dir;
  Icons icons = Pictures(dir, {"tomato", "gold", "teal"});
  Settings* settings = new Settings();
  std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
  CMenuContainer* container;
};

TEST_F(MenuContainerTest, PagesThroughItsChildrenWithTheNextPageButton) {
  Bind();
  EXPECT_EQ(container->size(), QSize(260, 6 * 40 + 5 * 2));  // auto_fix_size
  EXPECT_EQ(Texts(), (std::vector<std::string>{"Sound", "Theme", "Quality", "Colour", "Reset",
                                               "More (1/2)"}));
  EXPECT_EQ(Button(1)->geometry(), QRect(0, 42, 260, 40));
  EXPECT_TRUE(Button(2)->hasArrow());
  EXPECT_FALSE(Button(0)->hasArrow());
  EXPECT_EQ(Button(2)->valueText(), "Medium");

  Click(5);
  EXPECT_EQ(Texts(),
            (std::vector<std::string>{"Account", "Name", "", "Vibrate", "", "More (2/2)"}));
  EXPECT_FALSE(Button(2)->isEnabled());  // the blank item
  EXPECT_FALSE(Button(4)->isEnabled());  // nothing left for this slot
  EXPECT_EQ(Button(1)->valueText(), "Ada");
  QTest::mouseClick(Button(2), Qt::LeftButton);
  EXPECT_EQ(container->currentButton(), nullptr);
  Click(5);
  EXPECT_EQ(container->page(), 0);
  EXPECT_EQ(settings->selected, -1);

  // 30 items, 10 a page: nine items and the next-page button each.
  auto* many = new MenuContainerItem();
  many->SetAttribute("number_per_page", "10");
  many->SetAttribute("bt_next", "Next");
  for (int i = 0; i < 30; ++i)
    many->AddCommand("Item " + std::to_string(i), "reset", std::to_string(i), "");
  settings->Show(many);
  EXPECT_EQ(container->pageCount(), 4);
  EXPECT_EQ(Button(9)->text(), "Next(1/4)");
  for (int i = 0; i < 3; ++i)
    Click(9);
  EXPECT_EQ(Texts().front(), "Item 27");
  EXPECT_EQ(Button(9)->text(), "Next(4/4)");
  Click(9);
  EXPECT_EQ(Button(9)->text(), "Next(1/4)");
  settings->SetPropW("mcix_selected", base::Value(12));
  EXPECT_EQ(container->page(), 1);
  EXPECT_EQ(container->currentButton(), Button(3));
  EXPECT_TRUE(Button(3)->isChecked());
  EXPECT_TRUE(settings->reset->runs.empty());  // chosen, not clicked

  many = new MenuContainerItem();
  many->SetAttribute("number_per_page", "40");
  for (int i = 0; i < 30; ++i)
    many->AddBlank();
  settings->Show(many);
  EXPECT_EQ(container->numberPerPage(), 25);
  EXPECT_EQ(Texts().back(), "(1/2)");

  // Without the attribute: one item and the next-page button a page.
  many = new MenuContainerItem();
  for (const char* text : {"a", "b", "c"})
    many->AddCommand(text, "reset", "", "");
  settings->Show(many);
  EXPECT_EQ(Texts(), (std::vector<std::string>{"a", "(1/3)"}));
  settings->SetPropW("mcix_selected", base::Value(2));
  EXPECT_EQ(Texts(), (std::vector<std::string>{"c", "(3/3)"}));
}

TEST_F(MenuContainerTest, SwitchesStepAndCommandsRunOnAClick) {
  Bind();
  Click(0);
  EXPECT_TRUE(settings->sound);
  EXPECT_TRUE(Button(0)->isSwitchOn());
  EXPECT_EQ(Button(0)->valueText(), "On");
  EXPECT_EQ(settings->selected, 0);
  Click(0);
  EXPECT_FALSE(settings->sound);
  EXPECT_EQ(Button(0)->valueText(), "Off");

  std::vector<int> themes;
  for (int i = 0; i < 3; ++i) {
    Click(1);
    themes.push_back(settings->theme);
  }
  EXPECT_EQ(themes, (std::vector<int>{1, 2, 0}));
  EXPECT_EQ(Button(1)->valueText(), "tomato");
  EXPECT_FALSE(Button(1)->valueIcon().isNull());

  Click(4);
  EXPECT_EQ(settings->reset->runs, (std::vector<std::string>{"all"}));
  EXPECT_TRUE(Button(4)->isChecked());

  // And the other way: the view model's own writes show at once.
  settings->SetPropW("sound", base::Value(true));
  EXPECT_TRUE(Button(0)->isSwitchOn());
  settings->SetPropW("theme", base::Value(7));  // no such icon
  EXPECT_TRUE(Button(1)->valueIcon().isNull());
}

TEST_F(MenuContainerTest, SelectionFollowsTheViewModelOnceTheLayoutExists) {
  settings->selected = 8;
  Bind();
  EXPECT_EQ(container->page(), 1);  // at once
  EXPECT_EQ(container->currentButton(), nullptr);
  EXPECT_TRUE(QTest::qWaitFor([&] { return container->currentButton() == Button(3); }, 1000));
  EXPECT_EQ(container->GetUISelect(), 8);

  settings->SetPropW("mcix_selected", base::Value(0));
  EXPECT_EQ(container->page(), 0);
  EXPECT_TRUE(Button(0)->isChecked());
  EXPECT_FALSE(settings->sound);
  settings->SetPropW("mcix_selected", base::Value(40));  // out of range: stays
  EXPECT_TRUE(Button(0)->isChecked());
  Click(5);
  EXPECT_EQ(settings->selected, -1);
  EXPECT_EQ(container->currentButton(), nullptr);
}

TEST_F(MenuContainerTest, OptionDialogsWriteWhatIsChosenAndCloseWithout) {
  Bind();
  Click(2);
  QPointer<MenuContainerDialog> dialog = Dialog();
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(settings->selected, 2);
  EXPECT_EQ(dialog->optionCount(), 4);
  EXPECT_TRUE(dialog->optionButton(1)->isChecked());
  // Two columns, below the button.
  EXPECT_EQ(dialog->optionButton(1)->y(), dialog->optionButton(0)->y());
  EXPECT_GT(dialog->optionButton(2)->y(), dialog->optionButton(0)->y());
  const QRect anchor(Button(2)->mapToGlobal(QPoint(0, 0)), Button(2)->size());
  EXPECT_EQ(dialog->pos(), QPoint(anchor.left(), anchor.bottom() + 1));
  EXPECT_GE(dialog->width(), anchor.width());
  Screenshot(window.get(), "menu_container.png");
  Screenshot(dialog, "menu_container_text_dialog.png");

  Click(2);  // already open for this item
  EXPECT_EQ(Dialog(), dialog);
  QTest::mouseClick(dialog->optionButton(3), Qt::LeftButton);
  EXPECT_EQ(settings->quality, 3);
  EXPECT_EQ(Button(2)->valueText(), "Ultra");
  EXPECT_TRUE(Gone(dialog));
  EXPECT_EQ(container->currentDialog(), nullptr);

  Click(2);
  dialog = Dialog();
  ASSERT_NE(dialog, nullptr);
  QTest::keyClick(dialog, Qt::Key_Escape);
  EXPECT_TRUE(Gone(dialog));
  EXPECT_EQ(settings->quality, 3);

  Click(3);
  dialog = Dialog();
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->optionCount(), 3);
  EXPECT_EQ(dialog->optionButton(2)->y(), dialog->optionButton(0)->y());  // three columns
  Screenshot(dialog, "menu_container_icon_dialog.png");
  QTest::mouseClick(dialog->optionButton(2), Qt::LeftButton);
  EXPECT_EQ(settings->colour, 2);
  EXPECT_FALSE(Button(3)->valueIcon().isNull());
  EXPECT_TRUE(Gone(dialog));

  Click(3);
  dialog = Dialog();
  ASSERT_NE(dialog, nullptr);
  QTest::mouseClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(290, 290));
  EXPECT_TRUE(Gone(dialog));
  EXPECT_EQ(settings->colour, 2);

  // A command closes an open dialog.
  Click(2);
  dialog = Dialog();
  Click(4);
  EXPECT_TRUE(Gone(dialog));
}

TEST_F(MenuContainerTest, ApplicationDialogsOpenThroughTheNavigator) {
  AccountHandler account;
  EditHandler edit;
  Bind();
  Click(5);
  Click(0);
  ASSERT_FALSE(account.window.isNull());
  EXPECT_EQ(account.params["parent_vm"].Pointer(), settings);
  EXPECT_EQ(account.params["parent"].Pointer(), static_cast<QWidget*>(container));
  const QPoint at = Button(0)->mapToGlobal(QPoint(0, 0));
  EXPECT_EQ(std::string(account.params["window_pos"].Str()),
            QString("%1,%2,260,40").arg(at.x()).arg(at.y()).toStdString());
  EXPECT_EQ(container->currentDialog(), account.window);
  EXPECT_EQ(container->currentDialogViewModel(), &account.window_vm);

  Click(1);
  EXPECT_EQ(settings->name, "Grace");
  EXPECT_EQ(Button(1)->valueText(), "Grace");
  EXPECT_TRUE(Gone(account.window));  // the selection moved on
}

TEST_F(MenuContainerTest, LogsWhatItCannotDo) {
  ovui_test::LogCapture log;
  Bind();
  container->VmToUI(nullptr);
  EXPECT_TRUE(log.HasFailedCheck("VmToUI", "bt!=NULL"));
  container->VmToUI(Button(20));
  EXPECT_TRUE(log.HasFailedCheck("VmToUI", "item!=NULL"));
  container->SetUISelect(Button(20), true);
  EXPECT_TRUE(log.HasFailedCheck("SetUISelect", "NULL!=item"));
  QPushButton stranger;
  QObject::connect(&stranger, SIGNAL(clicked(bool)), container, SLOT(OnButtonClick(bool)));
  QTest::mouseClick(&stranger, Qt::LeftButton);
  EXPECT_TRUE(log.HasFailedCheck("OnButtonClick", "bt != NULL"));
  vm::MenuContainerBinder binder;
  EXPECT_FALSE(binder.Bind(nullptr, container, settings));
  EXPECT_TRUE(log.HasFailedCheck("Bind", "ctx != NULL && widget != NULL && vm != NULL"));
}

TEST_F(MenuContainerTest, OutlivesItsViewModelAndGoesFirstWithADialogOpen) {
  Bind();
  Click(2);
  ASSERT_NE(Dialog(), nullptr);
  window.reset();  // the dialog goes with the container

  window = std::make_unique<QWidget>();
  auto* other = new Settings();
  other->Show(SettingsMenu(icons));
  auto* alone = new CMenuContainer(window.get());
  alone->setProperty("binding.value", "{Binding Path=menu}");
  alone->bindToVm(other);
  other->Release();  // the container keeps it alive
  QTest::mouseClick(alone->button(0), Qt::LeftButton);
  EXPECT_TRUE(alone->button(0)->isSwitchOn());
}

TEST(MenuContainerItem, BuildsComparesAndCopiesTrees) {
  MenuContainerItem root;
  root.SetAttribute("bt_h", "50");
  const Icons icons{{"a.png", "a"}, {"b.png", "b"}};
  EXPECT_EQ(root.AddUserDlg("u", "p", "t")->GetKind(), MenuContainerItem::USER_DLG);
  EXPECT_EQ(root.AddSwitch("s", "p", "on", "off")->GetKind(), MenuContainerItem::SWITCH);
  EXPECT_EQ(root.AddSwitch("i", icons, "p")->GetKind(), MenuContainerItem::ICON_SWITCH);
  EXPECT_EQ(root.AddCommand("c", "cmd", "arg", "")->GetKind(), MenuContainerItem::COMMAND);
  EXPECT_EQ(root.AddEdit("e", "p", "t")->GetKind(), MenuContainerItem::EDIT);
  EXPECT_EQ(root.AddBlank()->GetKind(), MenuContainerItem::BLANK);
  EXPECT_EQ(root.AddTextDlg("x", {"1"}, "p", 9)->columns, 5);
  EXPECT_EQ(root.AddIconDlg("y", icons, "p", 0)->columns, 1);
  EXPECT_EQ(root.AddIconDlg("z", icons, "p", 12)->columns, 10);
  std::vector<bool> arrows;
  for (const MenuContainerItem* child : root.GetChilds())
    arrows.push_back(child->NeedArrow());
  EXPECT_EQ(arrows, (std::vector<bool>{true, false, false, false, false, false, true, true, true}));
  root.GetChilds()[3]->AddSwitch("nested", "q", "", "");

  MenuContainerItem copy;
  copy.Clone(root);
  EXPECT_TRUE(copy.IsSame(root));
  EXPECT_NE(copy.GetChilds()[3], root.GetChilds()[3]);
  copy.GetChilds()[3]->GetChilds()[0]->text = "changed";
  EXPECT_FALSE(copy.IsSame(root));
  copy.Clone(root);
  copy.GetChilds()[2]->icons[1].icon = "c.png";
  EXPECT_FALSE(copy.IsSame(root));
  copy.Clone(root);
  copy.SetAttribute("bt_h", "51");
  EXPECT_FALSE(copy.IsSame(root));

  ovui_test::LogCapture log;
  EXPECT_TRUE(copy.Remove(0));
  EXPECT_EQ(copy.GetChilds().size(), 8u);
  EXPECT_FALSE(copy.Remove(8));
  EXPECT_TRUE(log.HasFailedCheck("Remove", "index < this->childs.size()"));
  EXPECT_TRUE(copy.Add(new MenuContainerItem()));
  copy.ClearChilds();
  EXPECT_TRUE(copy.GetChilds().empty());
}

TEST(MenuContainerFrame, StaysOnTheScreenOfItsAnchor) {
  const QRect screen(0, 0, 800, 600);
  const QSize size(200, 100);
  EXPECT_EQ(MenuContainerFrame::Place(QRect(50, 100, 120, 40), size, screen), QPoint(50, 140));
  EXPECT_EQ(MenuContainerFrame::Place(QRect(50, 500, 120, 40), size, screen), QPoint(50, 400));
  EXPECT_EQ(MenuContainerFrame::Place(QRect(700, 100, 90, 40), size, screen), QPoint(600, 140));
  EXPECT_EQ(MenuContainerFrame::Place(QRect(-30, 100, 90, 40), size, screen), QPoint(0, 140));
}

// Designer places the container as a promoted QWidget; the loader must know
// how to make one.
struct Loader : QUiLoader {
  QWidget* createWidget(const QString& class_name, QWidget* parent, const QString& name) override {
    if (class_name != "CMenuContainer") return QUiLoader::createWidget(class_name, parent, name);
    auto* widget = new CMenuContainer(parent);
    widget->setObjectName(name);
    return widget;
  }
};

TEST(MenuContainerForm, BindsFromADesignerFile) {
  QFile file(QFileInfo(QString(__FILE__)).absolutePath() + "/data/menu_container_form.ui");
  ASSERT_TRUE(file.open(QFile::ReadOnly));
  Loader loader;
  std::unique_ptr<QWidget> form(loader.load(&file));
  ASSERT_NE(form, nullptr);
  auto* menu = form->findChild<CMenuContainer*>("menu");
  ASSERT_NE(menu, nullptr);
  ovui_test::TempDir dir;
  auto* settings = new Settings();
  settings->Show(SettingsMenu(Pictures(dir, {"teal"})));
  vm::BindingContext::CreateAndBind(form.get(), settings);
  form->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(form.get()));
  EXPECT_EQ(menu->button(0)->text(), "Sound");
  QTest::mouseClick(menu->button(0), Qt::LeftButton);
  EXPECT_TRUE(settings->sound);
  settings->Release();
  Screenshot(form.get(), "menu_container_form.png");
}

}  // namespace
