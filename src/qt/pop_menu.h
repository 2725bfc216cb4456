#ifndef OVUI_QT_POP_MENU_H_
#define OVUI_QT_POP_MENU_H_

#include <QObject>
#include <QPoint>

#include "mvvm/menu_data.h"
#include "mvvm/view_model.h"

class QMenu;
class QWidget;

// Gives a widget a right-click menu whose entries come from its view model:
// GetContextMenuData(widget's object name) supplies the vm::MenuData tree,
// the menu opens at the mouse cursor, and a chosen entry runs its command
// with ExecuteCommand. Entries whose command cannot execute are disabled.
//
// Owns neither the widget nor the view model: its owner destroys it no later
// than either. The first support attached to a widget serves its menu; a
// second one attached to the same widget reports success and stays silent.
class PopMenuSupport : public QObject {
  Q_OBJECT

 public:
  PopMenuSupport() = default;
  // Attaches to `widget` when `attach` is true; otherwise only keeps `view_model`.
  PopMenuSupport(QWidget* widget, vm::ViewModel* view_model, bool attach);

  // False (keeping only the view model) when `widget` is null or not a widget.
  bool Attach(QObject* widget, vm::ViewModel* view_model);
  bool SetViewModel(vm::ViewModel* view_model);
  // Fills `menu` with the entries below `root` (not `root` itself); used for
  // context menus and for the menus of "set_menu" requests.
  void BuildMenu(QMenu* menu, const vm::MenuData& root);

  QWidget* GetWidget() const { return this->widget; }
  vm::ViewModel* GetViewModel() const { return this->view_model; }

 public slots:
  void OnContextMenu(const QPoint& pos);
  void OnMenuAction();

 private:
  void AddMenuItem(QMenu* menu, const vm::MenuData& node);

  QWidget* widget = nullptr;
  vm::ViewModel* view_model = nullptr;
};

#endif  // OVUI_QT_POP_MENU_H_
