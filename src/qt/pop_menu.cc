#include "qt/pop_menu.h"

#include <QAction>
#include <QCursor>
#include <QIcon>
#include <QKeySequence>
#include <QMenu>
#include <QPointer>
#include <QVariant>
#include <QWidget>

#include "base/log.h"

namespace {

// Marks a widget that already has a support object connected to it.
const char kAlreadyAdded[] = "mvvm_menudata_already_add";
const char kCommand[] = "prop_command";
const char kCommandArg[] = "prop_command_arg";

QString ToQString(const std::string& text) {
  return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

std::string ToStdString(const QVariant& value) {
  return value.toString().toUtf8().toStdString();
}

}  // namespace

PopMenuSupport::PopMenuSupport(QWidget* widget, vm::ViewModel* view_model, bool attach) {
  if (attach) {
    Attach(widget, view_model);
  } else {
    this->view_model = view_model;
  }
}

bool PopMenuSupport::Attach(QObject* widget, vm::ViewModel* view_model) {
  this->view_model = view_model;
  if (!widget || !widget->isWidgetType()) {
    this->widget = nullptr;
    return false;
  }
  this->widget = static_cast<QWidget*>(widget);
  // The first support serves the menu; a second connection would open two.
  if (this->widget->property(kAlreadyAdded).toBool()) return true;
  this->widget->setProperty(kAlreadyAdded, true);
  this->widget->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(this->widget, SIGNAL(customContextMenuRequested(const QPoint&)), this,
          SLOT(OnContextMenu(const QPoint&)));
  return true;
}

bool PopMenuSupport::SetViewModel(vm::ViewModel* view_model) {
  this->view_model = view_model;
  return true;
}

void PopMenuSupport::OnContextMenu(const QPoint& pos) {
  (void)pos;  // the menu opens where the mouse is, whatever asked for it
  if (!this->widget || !this->view_model) return;
  const std::string name = this->widget->objectName().toUtf8().toStdString();
  vm::MenuData data;
  if (!this->view_model->GetContextMenuData(name, data)) return;

  // A command run from the menu may destroy the widget, and with it the menu
  // and this object: after exec only the guarded menu is touched.
  QPointer<QMenu> menu = new QMenu(this->widget);
  BuildMenu(menu, data);
  menu->exec(QCursor::pos());
  delete menu.data();
}

void PopMenuSupport::BuildMenu(QMenu* menu, const vm::MenuData& root) {
  OVUI_CHECK(menu != NULL, );
  if (root.separator) {
    menu->addSeparator();
    return;
  }
  for (const vm::MenuData* child : root.GetChilds())
    AddMenuItem(menu, *child);
}

void PopMenuSupport::AddMenuItem(QMenu* menu, const vm::MenuData& node) {
  if (node.separator) {
    menu->addSeparator();
    return;
  }
  if (node.GetChilds().empty()) {
    QAction* action = node.icon.empty()
                          ? menu->addAction(ToQString(node.text))
                          : menu->addAction(QIcon(ToQString(node.icon)), ToQString(node.text));
    action->setShortcut(QKeySequence());
    action->setProperty(kCommand, ToQString(node.command));
    action->setProperty(kCommandArg, ToQString(node.command_arg));
    const bool enabled =
        this->view_model && this->view_model->CanExecuteCommand(node.command, node.command_arg);
    action->setEnabled(enabled);
    connect(action, SIGNAL(triggered()), this, SLOT(OnMenuAction()));
    return;
  }
  auto* sub = new QMenu(ToQString(node.text), menu);
  if (!node.icon.empty()) sub->setIcon(QIcon(ToQString(node.icon)));
  menu->addMenu(sub);
  for (const vm::MenuData* child : node.GetChilds())
    AddMenuItem(sub, *child);
}

void PopMenuSupport::OnMenuAction() {
  QAction* act = qobject_cast<QAction*>(sender());
  OVUI_CHECK(act != NULL, );
  if (!this->view_model) return;
  const std::string command = ToStdString(act->property(kCommand));
  const std::string arg = ToStdString(act->property(kCommandArg));
  (void)this->view_model->ExecuteCommand(command, arg);
}
