#include "form_loader.h"

#include <QFile>
#include <QTableView>
#include <QUiLoader>

#include "qt/chart_view_ex.h"
#include "qt/check_combobox.h"
#include "qt/header_view_ext.h"
#include "qt/menu_container.h"

namespace {

class FormLoader : public QUiLoader {
 public:
  QWidget* createWidget(const QString& class_name, QWidget* parent, const QString& name) override {
    QWidget* widget = nullptr;
    if (class_name == QLatin1String("ChartViewEx")) {
      widget = new ChartViewEx(parent);
    } else if (class_name == QLatin1String("CMenuContainer")) {
      widget = new CMenuContainer(parent);
    } else if (class_name == QLatin1String("CCheckComboBox")) {
      widget = new CCheckComboBox(parent);
    } else {
      return QUiLoader::createWidget(class_name, parent, name);
    }
    widget->setObjectName(name);
    return widget;
  }
};

void PlaceHeaderWidgets(QWidget* root) {
  for (QTableView* table : root->findChildren<QTableView*>()) {
    if (table->property("binding.header").toString() != QLatin1String("ext")) continue;
    QHeaderViewExt* header = nullptr;
    for (QWidget* widget : table->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
      const QVariant section = widget->property("header.section");
      if (!section.isValid()) continue;
      if (!header) header = QHeaderViewExt::Install(table);
      header->setTitleWidget(section.toInt(), widget);
    }
  }
}

}  // namespace

std::unique_ptr<QWidget> LoadForm() {
  QFile file(":/form_demo/form_demo.ui");
  if (!file.open(QFile::ReadOnly)) return nullptr;
  FormLoader loader;
  std::unique_ptr<QWidget> form(loader.load(&file));
  if (form) PlaceHeaderWidgets(form.get());
  return form;
}
