#include "qt/menu_container.h"

#include <QButtonGroup>
#include <QColor>
#include <QIcon>
#include <QTimer>
#include <QVariant>
#include <cstdlib>

#include "base/log.h"
#include "mvvm/data_binding_parser.h"
#include "mvvm/navigator.h"
#include "qt/menu_container_dialog.h"
#include "qt/push_button_ex.h"

namespace {

const char kItemProp[] = "prop_MenuContainerItem";
const char kSelected[] = "mcix_selected";

QString FromUtf8(const std::string& text) {
  return QString::fromUtf8(text.c_str(), static_cast<int>(text.size()));
}

struct MetaTypeRegistrar {
  MetaTypeRegistrar() { qRegisterMetaType<MenuContainerItem*>("MenuContainerItem*"); }
};
const MetaTypeRegistrar meta_type_registrar;

}  // namespace

// MenuContainerItem

MenuContainerItem::~MenuContainerItem() {
  ClearChilds();
}

MenuContainerItem* MenuContainerItem::Append(int kind, const std::string& text) {
  auto* item = new MenuContainerItem(kind);
  item->text = text;
  this->childs.push_back(item);
  return item;
}

MenuContainerItem* MenuContainerItem::AddUserDlg(const std::string& text, const std::string& prop,
                                                 const std::string& target) {
  MenuContainerItem* item = Append(USER_DLG, text);
  item->prop = prop;
  item->target = target;
  return item;
}

MenuContainerItem* MenuContainerItem::AddSwitch(const std::string& text, const std::string& prop,
                                                const std::string& on_text,
                                                const std::string& off_text) {
  MenuContainerItem* item = Append(SWITCH, text);
  item->prop = prop;
  item->on_text = on_text;
  item->off_text = off_text;
  return item;
}

MenuContainerItem* MenuContainerItem::AddSwitch(const std::string& text,
                                                const std::vector<MenuContainerItemIcon>& icons,
                                                const std::string& prop) {
  MenuContainerItem* item = Append(ICON_SWITCH, text);
  item->icons = icons;
  item->prop = prop;
  return item;
}

MenuContainerItem* MenuContainerItem::AddCommand(const std::string& text,
                                                 const std::string& command, const std::string& arg,
                                                 const std::string& icon) {
  MenuContainerItem* item = Append(COMMAND, text);
  item->command = command;
  item->arg = arg;
  item->icon = icon;
  return item;
}

MenuContainerItem* MenuContainerItem::AddEdit(const std::string& text, const std::string& prop,
                                              const std::string& target) {
  MenuContainerItem* item = Append(EDIT, text);
  item->prop = prop;
  item->target = target;
  return item;
}

MenuContainerItem* MenuContainerItem::AddBlank() {
  return Append(BLANK, std::string());
}

MenuContainerItem* MenuContainerItem::AddTextDlg(const std::string& text,
                                                 const std::vector<std::string>& options,
                                                 const std::string& prop, int columns) {
  MenuContainerItem* item = Append(TEXT_DLG, text);
  item->options = options;
  item->prop = prop;
  item->columns = qBound(1, columns, 5);
  return item;
}

MenuContainerItem* MenuContainerItem::AddIconDlg(const std::string& text,
                                                 const std::vector<MenuContainerItemIcon>& icons,
                                                 const std::string& prop, int columns) {
  MenuContainerItem* item = Append(ICON_DLG, text);
  item->icons = icons;
  item->prop = prop;
  item->columns = qBound(1, columns, 10);
  return item;
}

bool MenuContainerItem::Add(MenuContainerItem* item) {
  OVUI_CHECK(item != NULL, false);
  this->childs.push_back(item);
  return true;
}

bool MenuContainerItem::Remove(unsigned index) {
  OVUI_CHECK(index < this->childs.size(), false);
  MenuContainerItem* item = this->childs[index];
  this->childs.erase(this->childs.begin() + index);
  item->Release();
  return true;
}

void MenuContainerItem::ClearChilds() {
  std::vector<MenuContainerItem*> old;
  old.swap(this->childs);
  for (MenuContainerItem* item : old)
    item->Release();
}

bool MenuContainerItem::IsSame(const MenuContainerItem& other) const {
  if (this == &other) return true;
  if (this->kind != other.kind || this->text != other.text || this->prop != other.prop ||
      this->target != other.target || this->command != other.command || this->arg != other.arg ||
      this->icon != other.icon || this->on_text != other.on_text ||
      this->off_text != other.off_text || this->options != other.options ||
      this->icons != other.icons || this->columns != other.columns ||
      this->attributes != other.attributes || this->childs.size() != other.childs.size())
    return false;
  for (size_t i = 0; i < this->childs.size(); ++i) {
    if (!this->childs[i]->IsSame(*other.childs[i])) return false;
  }
  return true;
}

void MenuContainerItem::Clone(const MenuContainerItem& other) {
  if (this == &other) return;
  this->kind = other.kind;
  this->text = other.text;
  this->prop = other.prop;
  this->target = other.target;
  this->command = other.command;
  this->arg = other.arg;
  this->icon = other.icon;
  this->on_text = other.on_text;
  this->off_text = other.off_text;
  this->options = other.options;
  this->icons = other.icons;
  this->columns = other.columns;
  this->attributes = other.attributes;
  ClearChilds();
  for (const MenuContainerItem* child : other.childs) {
    auto* copy = new MenuContainerItem();
    copy->Clone(*child);
    this->childs.push_back(copy);
  }
}

bool MenuContainerItem::NeedArrow() const {
  return this->kind == USER_DLG || this->kind == TEXT_DLG || this->kind == ICON_DLG;
}

void MenuContainerItem::SetAttribute(const std::string& name, const std::string& value) {
  this->attributes[name] = value;
}

std::string MenuContainerItem::GetAttribute(const std::string& name, const std::string& def) const {
  const auto it = this->attributes.find(name);
  return it == this->attributes.end() ? def : it->second;
}

bool MenuContainerItem::HasAttribute(const std::string& name) const {
  return this->attributes.count(name) != 0;
}

// CMenuContainer

CMenuContainer::CMenuContainer(QWidget* parent) : QWidget(parent) {
  this->group = new QButtonGroup(this);
  this->group->setExclusive(true);
  for (int i = 0; i < kButtonCount; ++i) {
    // No object name: the binding walk would take a named button for a
    // command button of that name.
    auto* bt = new QPushButtonEx(this);
    bt->hide();
    this->group->addButton(bt);
    connect(bt, SIGNAL(clicked(bool)), this, SLOT(OnButtonClick(bool)));
    this->buttons.push_back(bt);
  }
}

CMenuContainer::~CMenuContainer() {
  // The dialog may be our child: it must not call back into a half-destroyed
  // container.
  if (this->current_dialog) disconnect(this->current_dialog, nullptr, this, nullptr);
  this->current_dialog = nullptr;
  if (this->view_model) {
    this->view_model->Off("prop-changed", this);
    this->view_model->Release();
  }
  base::SafeRelease(this->body_binding);
  base::SafeRelease(this->body_item);
}

bool CMenuContainer::bindToVm(vm::ViewModel* vm) {
  if (vm) vm->AddRef();
  if (this->view_model) {
    this->view_model->Off("prop-changed", this);
    this->view_model->Release();
  }
  this->view_model = vm;
  if (vm) vm->On("prop-changed", this);
  base::SafeRelease(this->body_binding);
  const QVariant rule = property("binding.value");
  this->body_binding =
      rule.isValid() ? vm::DataBindingParser::FromString(rule.toString().toUtf8().toStdString())
                     : nullptr;
  OnBodyChanged(true);
  return true;
}

QPushButtonEx* CMenuContainer::button(int index) const {
  if (index < 0 || index >= kButtonCount) return nullptr;
  return this->buttons[index];
}

MenuContainerItem* CMenuContainer::itemOf(const QWidget* button) {
  return button ? button->property(kItemProp).value<MenuContainerItem*>() : nullptr;
}

int CMenuContainer::Slots() const {
  return this->page_count > 1 ? this->number_per_page - 1 : this->number_per_page;
}

void CMenuContainer::OnBodyChanged(bool first) {
  MenuContainerItem* old = nullptr;
  base::Value value;
  MenuContainerItem* item = nullptr;
  if (this->view_model && this->body_binding &&
      this->body_binding->GetPropW(this->view_model, value))
    item = static_cast<MenuContainerItem*>(value.Pointer());
  if (!this->body_item || !item || !this->body_item->IsSame(*item)) {
    // The old tree goes once no button points into it any more.
    old = this->body_item;
    this->body_item = new MenuContainerItem();
    if (item) this->body_item->Clone(*item);
  }
  const MenuContainerItem& root = *this->body_item;
  const int children = static_cast<int>(root.GetChilds().size());

  int n = std::atoi(root.GetAttribute("number_per_page").c_str());
  if (n >= kButtonCount) n = kButtonCount;
  if (n <= 0) n = 1;
  // One button per page leaves no room for an item beside the next-page
  // button: page in twos instead.
  if (n == 1 && children > 1) n = 2;
  this->number_per_page = n;
  this->page_count = children <= n ? 1 : (children + n - 2) / (n - 1);

  this->next_text = FromUtf8(root.GetAttribute("bt_next"));
  this->bt_gap = std::atoi(root.GetAttribute("bt_gap").c_str());
  this->bt_w = std::atoi(root.GetAttribute("bt_w").c_str());
  this->bt_h = root.HasAttribute("bt_h") ? std::atoi(root.GetAttribute("bt_h").c_str()) : 76;
  const std::string style = root.GetAttribute("style_sheet");
  if (!style.empty()) setStyleSheet(FromUtf8(style));
  const QColor select_bk(FromUtf8(root.GetAttribute("select_bk")));
  this->auto_fix_size = QString::fromUtf8(root.GetAttribute("auto_fix_size").c_str())
                            .compare("true", Qt::CaseInsensitive) == 0;
  for (QPushButtonEx* bt : this->buttons) {
    bt->setSelectBackground(select_bk);
    const int side = qBound(16, this->bt_h / 2, 48);
    bt->setIconSize(QSize(side, side));
  }
  LayoutButtons();

  const int sel = GetVMSelect();
  const int page = sel >= 0 && sel<children&& this->page_count> 1 ? sel / (n - 1) : 0;
  ShowPage(page);
  base::SafeRelease(old);

  if (first) {
    QTimer::singleShot(10, this, SLOT(OnUpdateAsync()));
  } else {
    VMSelectToUI();
  }
}

void CMenuContainer::LayoutButtons() {
  const int n = this->number_per_page;
  const int h = qMax(1, this->bt_h);
  const int gap = qMax(0, this->bt_gap);
  if (this->auto_fix_size && n > 0) {
    const int height = n * h + (n - 1) * gap;
    if (this->bt_w > 0) {
      setFixedSize(this->bt_w, height);
    } else {
      setFixedHeight(height);
    }
  }
  const int w = this->bt_w > 0 ? this->bt_w : width();
  for (int i = 0; i < kButtonCount; ++i)
    this->buttons[i]->setGeometry(0, i * (h + gap), w, h);
  updateGeometry();
}

QSize CMenuContainer::sizeHint() const {
  const int n = this->number_per_page;
  if (n <= 0) return QWidget::sizeHint();
  const int w = this->bt_w > 0 ? this->bt_w : 240;
  return QSize(w, n * this->bt_h + (n - 1) * this->bt_gap);
}

void CMenuContainer::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  // Buttons without a width of their own follow the container's.
  if (this->bt_w <= 0) {
    for (QPushButtonEx* bt : this->buttons)
      bt->resize(width(), bt->height());
  }
}

void CMenuContainer::UncheckAll() {
  // An exclusive group never lets its last checked button go.
  this->group->setExclusive(false);
  for (QPushButtonEx* bt : this->buttons)
    bt->setChecked(false);
  this->group->setExclusive(true);
}

void CMenuContainer::Clear() {
  this->prop_buttons.clear();
  SetCurrentDlg(nullptr, nullptr);
  this->current_button = nullptr;
  UncheckAll();
}

void CMenuContainer::ShowPage(int page) {
  if (!this->body_item || this->number_per_page < 1) return;
  const int n = this->number_per_page;
  const int slot_count = Slots();
  const int start = (n - 1) * page;
  this->page_index = page;
  for (int i = 0; i < kButtonCount; ++i) {
    QPushButtonEx* bt = this->buttons[i];
    // Hidden ones too: none may point into a tree that is about to go.
    bt->setProperty(kItemProp, QVariant());
    bt->reset();
    bt->setEnabled(false);
    bt->setVisible(i < n);
  }
  Clear();

  const std::vector<MenuContainerItem*>& childs = this->body_item->GetChilds();
  const int count = static_cast<int>(childs.size());
  for (int slot = 0; slot < slot_count && start + slot < count; ++slot) {
    MenuContainerItem* item = childs[start + slot];
    QPushButtonEx* bt = this->buttons[slot];
    bt->setProperty(kItemProp, QVariant::fromValue(item));
    bt->setText(FromUtf8(item->text));
    bt->setArrow(item->NeedArrow());
    bt->setSwitch(item->GetKind() == MenuContainerItem::SWITCH);
    if (!item->icon.empty()) bt->setIcon(QIcon(FromUtf8(item->icon)));
    if (!item->prop.empty()) this->prop_buttons[item->prop].push_back(bt);
    bt->setEnabled(true);
    VmToUI(bt);
  }

  this->next_button = nullptr;
  if (this->page_count >= 2) {
    QPushButtonEx* bt = this->buttons[n - 1];
    bt->setProperty(kItemProp, QVariant());
    bt->setText(QString::asprintf("%s(%d/%d)", this->next_text.toUtf8().constData(), page + 1,
                                  this->page_count));
    bt->setEnabled(true);
    this->next_button = bt;
  }
}

void CMenuContainer::VmToUI(QPushButtonEx* bt) {
  if (!bt) {
    OVUI_LOG_FAILED("bt!=NULL");
    return;
  }
  MenuContainerItem* item = itemOf(bt);
  if (!item) {
    OVUI_LOG_FAILED("item!=NULL");
    return;
  }
  base::Value v;
  const bool has =
      this->view_model && !item->prop.empty() && this->view_model->GetPropW(item->prop, v);
  switch (item->GetKind()) {
    case MenuContainerItem::SWITCH: {
      const bool on = has && v.Bool();
      bt->setSwitchOn(on);
      bt->setValueText(FromUtf8(on ? item->on_text : item->off_text));
      break;
    }
    case MenuContainerItem::ICON_SWITCH: {
      const int index = has ? v.I32() : -1;
      const bool known = index >= 0 && index < static_cast<int>(item->icons.size());
      bt->setValueIcon(known ? QIcon(FromUtf8(item->icons[index].icon)) : QIcon());
      bt->setValueText(known ? FromUtf8(item->icons[index].text) : QString());
      break;
    }
    case MenuContainerItem::EDIT: {
      char buf[64];
      const char* text = has ? v.ToStr(buf, sizeof(buf)) : nullptr;
      bt->setValueText(text ? QString::fromUtf8(text) : QString());
      break;
    }
    case MenuContainerItem::BLANK:
      bt->setEnabled(false);
      break;
    case MenuContainerItem::TEXT_DLG: {
      // The chosen option shows beside the arrow.
      const int index = has ? v.I32() : -1;
      const bool known = index >= 0 && index < static_cast<int>(item->options.size());
      bt->setValueText(known ? FromUtf8(item->options[index]) : QString());
      bt->update();
      break;
    }
    case MenuContainerItem::ICON_DLG: {
      const int index = has ? v.I32() : -1;
      const bool known = index >= 0 && index < static_cast<int>(item->icons.size());
      bt->setValueIcon(known ? QIcon(FromUtf8(item->icons[index].icon)) : QIcon());
      bt->update();
      break;
    }
    default:
      break;
  }
}

void CMenuContainer::SetVMSelect(int index) {
  if (!this->view_model) return;
  base::Value v;
  v.I32(index);
  this->view_model->SetPropW(kSelected, v);
}

int CMenuContainer::GetVMSelect() const {
  base::Value v;
  if (!this->view_model || !this->view_model->GetPropW(kSelected, v)) return -1;
  return v.I32();
}

int CMenuContainer::GetUISelect() const {
  if (!this->current_button || !this->body_item) return -1;
  if (this->current_button == this->next_button && this->page_count > 1) return -1;
  const std::vector<MenuContainerItem*>& childs = this->body_item->GetChilds();
  MenuContainerItem* item = itemOf(this->current_button);
  for (size_t i = 0; item && i < childs.size(); ++i) {
    if (childs[i] == item) return static_cast<int>(i);
  }
  return -1;
}

void CMenuContainer::UISelectToVM() {
  const int ui = GetUISelect();
  if (GetVMSelect() != ui) SetVMSelect(ui);
}

void CMenuContainer::VMSelectToUI() {
  if (!this->body_item) return;
  const int sel = GetVMSelect();
  const int children = static_cast<int>(this->body_item->GetChilds().size());
  if (sel == GetUISelect() || sel < 0 || sel >= children) return;
  const int per_page = this->number_per_page - 1;
  // A single page has no next-page button: every slot holds an item.
  const int page = this->page_count > 1 ? sel / per_page : 0;
  ShowPage(page);
  const int slot = this->page_count > 1 ? sel - per_page * page : sel;
  if (slot < Slots()) SetUISelect(this->buttons[slot], false);
}

void CMenuContainer::SetUISelect(QPushButtonEx* bt, bool clicked) {
  OVUI_CHECK(bt != NULL, );
  if (this->current_button != bt) {
    this->current_button = bt;
    if (!bt->isChecked()) bt->setChecked(true);
  }
  if (bt == this->next_button && this->page_count > 1) {
    SetCurrentDlg(nullptr, nullptr);
    ShowPage(this->page_index + 1 < this->page_count ? this->page_index + 1 : 0);
    UISelectToVM();
    return;
  }
  MenuContainerItem* item = itemOf(bt);
  if (NULL == item) {
    OVUI_LOG_FAILED("NULL!=item");
    return;
  }
  switch (item->GetKind()) {
    case MenuContainerItem::SWITCH:
      if (clicked && this->view_model) {
        base::Value v;
        this->view_model->GetPropW(item->prop, v);
        this->view_model->SetPropW(item->prop, base::Value(!v.Bool()));
      }
      UISelectToVM();
      break;
    case MenuContainerItem::COMMAND:
      SetCurrentDlg(nullptr, nullptr);
      if (clicked && this->view_model) this->view_model->ExecuteCommand(item->command, item->arg);
      break;
    case MenuContainerItem::ICON_SWITCH:
      if (clicked && this->view_model && !item->icons.empty()) {
        base::Value v;
        const int index = this->view_model->GetPropW(item->prop, v) ? v.I32() : -1;
        const int count = static_cast<int>(item->icons.size());
        base::Value next;
        next.I32(index >= 0 && index + 1 < count ? index + 1 : 0);
        this->view_model->SetPropW(item->prop, next);
      }
      break;
    case MenuContainerItem::TEXT_DLG:
    case MenuContainerItem::ICON_DLG:
      OpenDialog(bt, item);
      break;
    case MenuContainerItem::USER_DLG:
    case MenuContainerItem::EDIT:
      SendRequest(bt, item);
      break;
    default:
      break;
  }
}

void CMenuContainer::OpenDialog(QPushButtonEx* bt, MenuContainerItem* item) {
  auto* open = qobject_cast<MenuContainerDialog*>(this->current_dialog);
  // A closed pop-up lingers until its deferred deletion: it no longer counts.
  if (open && open->isVisible() && open->GetItem() == item) return;
  auto* dialog = new MenuContainerDialog(item, this->view_model, this);
  dialog->setStyleSheet(styleSheet());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  SetCurrentDlg(dialog, nullptr);
  dialog->SetAlignRect(QRect(bt->mapToGlobal(QPoint(0, 0)), bt->size()));
  dialog->show();
  UISelectToVM();
}

void CMenuContainer::SendRequest(QPushButtonEx* bt, MenuContainerItem* item) {
  auto* request = new vm::NavigatorRequest(item->target);
  request->params["parent_vm"] = base::Value(static_cast<void*>(this->view_model));
  request->params["parent"] = base::Value(static_cast<void*>(static_cast<QWidget*>(this)));
  const QPoint pos = bt->mapToGlobal(QPoint(0, 0));
  request->params["window_pos"] = base::Value(
      QString::asprintf("%d,%d,%d,%d", pos.x(), pos.y(), bt->width(), bt->height()).toStdString());
  // An editor has to know what to edit.
  request->params["prop"] = base::Value(item->prop);
  vm::Navigator::To(request);
  const auto target = request->params.find("target");
  const auto target_vm = request->params.find("target_vm");
  QWidget* dialog =
      target == request->params.end() ? nullptr : static_cast<QWidget*>(target->second.Pointer());
  vm::ViewModel* dialog_vm = target_vm == request->params.end()
                                 ? nullptr
                                 : static_cast<vm::ViewModel*>(target_vm->second.Pointer());
  request->Release();
  SetCurrentDlg(dialog, dialog_vm);
}

void CMenuContainer::SetCurrentDlg(QWidget* dialog, vm::ViewModel* dialog_vm) {
  if (this->current_dialog != dialog) {
    QWidget* old = this->current_dialog;
    this->current_dialog = nullptr;
    if (old) {
      disconnect(old, SIGNAL(destroyed(QObject*)), this, SLOT(OnWidgetDestroyed(QObject*)));
      old->close();
    }
    this->current_dialog = dialog;
    if (dialog)
      connect(dialog, SIGNAL(destroyed(QObject*)), this, SLOT(OnWidgetDestroyed(QObject*)));
  }
  this->current_dialog_vm = dialog ? dialog_vm : nullptr;
}

void CMenuContainer::OnButtonClick(bool) {
  auto* bt = qobject_cast<QPushButtonEx*>(sender());
  OVUI_CHECK(bt != NULL, );
  SetUISelect(bt, true);
}

void CMenuContainer::OnWidgetDestroyed(QObject* obj) {
  if (obj == this->current_dialog) {
    this->current_dialog = nullptr;
    this->current_dialog_vm = nullptr;
  }
}

void CMenuContainer::OnUpdateAsync() {
  VMSelectToUI();
}

bool CMenuContainer::OnEvent(events::Event* e) {
  if (!e || e->GetType() != "prop-changed") return false;
  const std::string name = e->GetParam("name").Str();
  // "PropsChange": everything may have changed.
  const bool all = e->GetParam("kind").CmpStr("PropsChange") == 0;
  if (all || (this->body_binding && name == this->body_binding->path)) {
    OnBodyChanged(false);
  } else if (name == kSelected) {
    VMSelectToUI();
  } else {
    const auto it = this->prop_buttons.find(name);
    if (it != this->prop_buttons.end()) {
      // VmToUI may not change the map, but a copy keeps that a non-issue.
      const std::vector<QPushButtonEx*> bts = it->second;
      for (QPushButtonEx* bt : bts)
        VmToUI(bt);
    }
  }
  return false;
}
