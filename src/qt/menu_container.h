#ifndef OVUI_QT_MENU_CONTAINER_H_
#define OVUI_QT_MENU_CONTAINER_H_

#include <QMetaType>
#include <QWidget>
#include <map>
#include <string>
#include <vector>

#include "base/ref_obj.h"
#include "events/event_listener.h"
#include "mvvm/data_binding.h"
#include "mvvm/view_model.h"

class QButtonGroup;
class QPushButtonEx;

// One picture of an icon switch or an icon dialog: `icon` is a file or
// resource path that QIcon loads, `text` its name (shown beside it on the
// button and as the option's tool tip).
struct MenuContainerItemIcon {
  std::string icon;
  std::string text;

  bool operator==(const MenuContainerItemIcon& other) const {
    return icon == other.icon && text == other.text;
  }
  bool operator!=(const MenuContainerItemIcon& other) const { return !(*this == other); }
};

// A node of the tree a CMenuContainer shows: the root carries the panel's
// attributes, each child is one button. The kind is chosen by the builder
// that creates the child; every builder appends the child to this node and
// returns it (the node owns its children).
//
// The tree is plain data: the container works on its own Clone of the root
// that the view model holds, so a view model may build a new tree and set
// the pointer again to change the panel.
class MenuContainerItem : public base::RefObj<MenuContainerItem>, public base::NoneClonable {
 public:
  enum Kind {
    USER_DLG = 0,     // opens an application dialog through vm::Navigator
    SWITCH = 1,       // toggles a boolean property
    ICON_SWITCH = 2,  // steps an integer property through `icons`, wrapping
    COMMAND = 3,      // runs a view-model command
    EDIT = 4,         // opens an editor through vm::Navigator; shows the property's text
    BLANK = 5,        // an empty, disabled button
    TEXT_DLG = 6,     // a MenuContainerDialog of `options`
    ICON_DLG = 7,     // a MenuContainerDialog of `icons`
  };

  // A root (or a blank item).
  MenuContainerItem() = default;
  ~MenuContainerItem() override;

  MenuContainerItem* AddUserDlg(const std::string& text, const std::string& prop,
                                const std::string& target);
  // `on_text` and `off_text` are shown beside the on/off mark.
  MenuContainerItem* AddSwitch(const std::string& text, const std::string& prop,
                               const std::string& on_text, const std::string& off_text);
  MenuContainerItem* AddSwitch(const std::string& text,
                               const std::vector<MenuContainerItemIcon>& icons,
                               const std::string& prop);
  // `icon` (a path, may be empty) is drawn before the text.
  MenuContainerItem* AddCommand(const std::string& text, const std::string& command,
                                const std::string& arg, const std::string& icon);
  MenuContainerItem* AddEdit(const std::string& text, const std::string& prop,
                             const std::string& target);
  MenuContainerItem* AddBlank();
  // `columns` is clamped to 1..5.
  MenuContainerItem* AddTextDlg(const std::string& text, const std::vector<std::string>& options,
                                const std::string& prop, int columns);
  // `columns` is clamped to 1..10.
  MenuContainerItem* AddIconDlg(const std::string& text,
                                const std::vector<MenuContainerItemIcon>& icons,
                                const std::string& prop, int columns);

  const std::vector<MenuContainerItem*>& GetChilds() const { return this->childs; }
  // Appends `item`, adopting the caller's reference; false (logged) for null.
  bool Add(MenuContainerItem* item);
  // False (logged) when `index` is out of range.
  bool Remove(unsigned index);
  void ClearChilds();

  // Deep comparison: kind, every field, attributes and children.
  bool IsSame(const MenuContainerItem& other) const;
  // Makes this node a deep copy of `other`, children included.
  void Clone(const MenuContainerItem& other);

  int GetKind() const { return this->kind; }
  // Items that open something of their own get an arrow on their button.
  bool NeedArrow() const;

  // Panel attributes, read from the root: "number_per_page", "bt_next",
  // "bt_gap", "bt_w", "bt_h", "style_sheet", "select_bk", "auto_fix_size".
  void SetAttribute(const std::string& name, const std::string& value);
  // The attribute, or `def` when it is not set.
  std::string GetAttribute(const std::string& name, const std::string& def = "") const;
  bool HasAttribute(const std::string& name) const;

  std::string text;
  // The view-model property the item shows or changes.
  std::string prop;
  // Navigator target of USER_DLG and EDIT.
  std::string target;
  std::string command;
  std::string arg;
  std::string icon;
  std::string on_text;
  std::string off_text;
  std::vector<std::string> options;
  std::vector<MenuContainerItemIcon> icons;
  int columns = 1;
  std::map<std::string, std::string> attributes;

 private:
  explicit MenuContainerItem(int kind) : kind(kind) {}
  MenuContainerItem* Append(int kind, const std::string& text);

  int kind = BLANK;
  std::vector<MenuContainerItem*> childs;
};

Q_DECLARE_METATYPE(MenuContainerItem*)

// A paged panel of buttons, one per child of the MenuContainerItem tree that
// a view-model property holds as a pointer (the container's "binding.value",
// e.g. "{Binding Path=menu}"). Buttons are laid out in one column of "bt_w" x
// "bt_h" with "bt_gap" between them. When the children do not fit into
// "number_per_page" buttons, the last button of each page turns to the next
// page and reads "<bt_next>(<page>/<count>)".
//
// The index of the selected child is mirrored both ways in the view-model
// integer "mcix_selected" (-1: none). Selecting a dialog item, by click or
// through "mcix_selected", opens its dialog: a MenuContainerDialog for text
// and icon options, or the application's own through vm::Navigator for
// USER_DLG and EDIT items. Requests carry "parent_vm", "parent" (this
// widget), "window_pos" ("x,y,w,h" of the button, global) and "prop" (the
// item's property); a handler that opens a window hands it back in "target"
// with its view model in "target_vm", so that the panel closes it when the
// selection moves on.
//
// The container holds a reference on its view model until it is destroyed.
class CMenuContainer : public QWidget, public events::EventListener {
  Q_OBJECT

 public:
  static constexpr int kButtonCount = 25;

  explicit CMenuContainer(QWidget* parent = nullptr);
  ~CMenuContainer() override;

  // Listens to `vm` and shows the tree its "binding.value" property holds.
  // The first selection follows 10 ms later, once the layout exists.
  bool bindToVm(vm::ViewModel* vm);

  // Forgets the buttons' properties and the checked button, closes the
  // current dialog.
  void Clear();
  void SetVMSelect(int index);
  // "mcix_selected", or -1 when the view model has none.
  int GetVMSelect() const;
  // The checked button's index among the root's children; -1 for none or
  // for the next-page button.
  int GetUISelect() const;
  void UISelectToVM();
  // Shows the page of "mcix_selected" and checks its button.
  void VMSelectToUI();
  void ShowPage(int page);
  void OnBodyChanged(bool first);
  // Checks `button` and does what its item does. `clicked` is false when the
  // selection comes from the view model: switches, icon switches and
  // commands then change nothing, dialogs still open.
  void SetUISelect(QPushButtonEx* button, bool clicked);
  // Shows the item's property on `button`.
  void VmToUI(QPushButtonEx* button);
  // Closes the current dialog unless it is `dialog`, and remembers `dialog`.
  void SetCurrentDlg(QWidget* dialog, vm::ViewModel* dialog_vm);

  bool OnEvent(events::Event* e) override;

  // The button pool, 0 .. kButtonCount - 1.
  QPushButtonEx* button(int index) const;
  QPushButtonEx* currentButton() const { return this->current_button; }
  QPushButtonEx* nextButton() const { return this->next_button; }
  QWidget* currentDialog() const { return this->current_dialog; }
  vm::ViewModel* currentDialogViewModel() const { return this->current_dialog_vm; }
  // The item a button shows, or null.
  static MenuContainerItem* itemOf(const QWidget* button);
  const MenuContainerItem* body() const { return this->body_item; }
  int numberPerPage() const { return this->number_per_page; }
  int page() const { return this->page_index; }
  int pageCount() const { return this->page_count; }

  QSize sizeHint() const override;

 public slots:
  void OnButtonClick(bool checked);
  void OnWidgetDestroyed(QObject* obj);
  void OnUpdateAsync();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void LayoutButtons();
  void OpenDialog(QPushButtonEx* button, MenuContainerItem* item);
  void SendRequest(QPushButtonEx* button, MenuContainerItem* item);
  void UncheckAll();
  int Slots() const;

  std::vector<QPushButtonEx*> buttons;
  QButtonGroup* group = nullptr;
  vm::ViewModel* view_model = nullptr;
  vm::DataBinding* body_binding = nullptr;
  MenuContainerItem* body_item = nullptr;
  std::map<std::string, std::vector<QPushButtonEx*>> prop_buttons;
  QPushButtonEx* current_button = nullptr;
  int number_per_page = 0;
  int page_index = 0;
  int page_count = 0;
  QString next_text;
  QPushButtonEx* next_button = nullptr;
  QWidget* current_dialog = nullptr;
  vm::ViewModel* current_dialog_vm = nullptr;

  int bt_w = 0;  // 0: the container's width
  int bt_h = 76;
  int bt_gap = 0;
  bool auto_fix_size = false;
};

#endif  // OVUI_QT_MENU_CONTAINER_H_
