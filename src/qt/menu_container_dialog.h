#ifndef OVUI_QT_MENU_CONTAINER_DIALOG_H_
#define OVUI_QT_MENU_CONTAINER_DIALOG_H_

#include <vector>

#include "mvvm/view_model.h"
#include "qt/menu_container_frame.h"

class MenuContainerItem;
class QAbstractButton;

// The pop-up of a text-option or icon-option item of a CMenuContainer: its
// options as a grid of `columns` buttons, the current one checked. Choosing
// an option writes its index to the item's property and closes the dialog;
// Escape or a click outside closes it without writing.
//
// The dialog holds a reference on the item and on the view model while it
// lives, so it may outlast the panel's page or tree.
class MenuContainerDialog : public MenuContainerFrame {
  Q_OBJECT

 public:
  MenuContainerDialog(MenuContainerItem* item, vm::ViewModel* vm, QWidget* parent = nullptr);
  ~MenuContainerDialog() override;

  MenuContainerItem* GetItem() const { return this->item; }
  int optionCount() const { return static_cast<int>(this->options.size()); }
  // The button of option `index`, or null.
  QAbstractButton* optionButton(int index) const;

 public slots:
  void OnOptionClick();

 private:
  MenuContainerItem* item;
  vm::ViewModel* view_model;
  std::vector<QAbstractButton*> options;
};

#endif  // OVUI_QT_MENU_CONTAINER_DIALOG_H_
