#include "qt/menu_container_dialog.h"

#include <QGridLayout>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

#include "base/log.h"
#include "qt/menu_container.h"

MenuContainerDialog::MenuContainerDialog(MenuContainerItem* item, vm::ViewModel* vm,
                                         QWidget* parent)
    : MenuContainerFrame(parent), item(item), view_model(vm) {
  if (item) item->AddRef();
  if (vm) vm->AddRef();
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(6, 6, 6, 6);
  grid->setSpacing(4);
  OVUI_CHECK(item != NULL && vm != NULL, );

  base::Value current;
  const int selected = vm->GetPropW(item->prop, current) ? current.I32() : -1;
  const bool icons = item->GetKind() == MenuContainerItem::ICON_DLG;
  const int count = static_cast<int>(icons ? item->icons.size() : item->options.size());
  const int columns = qMax(1, item->columns);
  for (int i = 0; i < count; ++i) {
    QAbstractButton* bt;
    if (icons) {
      const MenuContainerItemIcon& icon = item->icons[i];
      auto* tool = new QToolButton(this);
      tool->setIcon(QIcon(QString::fromUtf8(icon.icon.c_str())));
      tool->setIconSize(QSize(32, 32));
      tool->setText(QString::fromUtf8(icon.text.c_str()));
      tool->setToolTip(tool->text());
      tool->setToolButtonStyle(icon.text.empty() ? Qt::ToolButtonIconOnly
                                                 : Qt::ToolButtonTextUnderIcon);
      tool->setAutoRaise(true);
      bt = tool;
    } else {
      auto* push = new QPushButton(QString::fromUtf8(item->options[i].c_str()), this);
      push->setMinimumHeight(32);
      bt = push;
    }
    bt->setCheckable(true);
    bt->setChecked(i == selected);
    bt->setFocusPolicy(Qt::StrongFocus);
    connect(bt, SIGNAL(clicked()), this, SLOT(OnOptionClick()));
    grid->addWidget(bt, i / columns, i % columns);
    this->options.push_back(bt);
  }
  if (selected >= 0 && selected < count) this->options[selected]->setFocus();
}

MenuContainerDialog::~MenuContainerDialog() {
  base::SafeRelease(this->item);
  base::SafeRelease(this->view_model);
}

QAbstractButton* MenuContainerDialog::optionButton(int index) const {
  if (index < 0 || index >= optionCount()) return nullptr;
  return this->options[index];
}

void MenuContainerDialog::OnOptionClick() {
  const int index = static_cast<int>(
      std::find(this->options.begin(), this->options.end(), sender()) - this->options.begin());
  OVUI_CHECK(index < optionCount(), );
  if (this->item && this->view_model) {
    base::Value v;
    v.I32(index);
    this->view_model->SetPropW(this->item->prop, v);
  }
  close();
}
