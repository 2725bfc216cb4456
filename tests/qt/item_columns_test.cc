#include "qt/item_columns.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDateEdit>
#include <QDateTime>
#include <QSpinBox>
#include <QTableView>
#include <string>

#include "mvvm/view_model_array.h"
#include "qt/table_model.h"
#include "support/item_views.h"

namespace {

// The choices live on the list, not on its rows.
struct Garden : vm::ViewModelArray {
  Garden() { InstallProp("kinds", &this->kinds); }
  std::string kinds = "fruit\nnut\n";
};

// The editors that Editor= names, through a real table. The row's qty
// doubles as seconds since the epoch for the date column.
TEST(ItemColumnsTest, TheDelegateOpensTheNamedEditor) {
  auto* garden = new Garden;
  auto* plant = new ovui_test::Row("nut", 86400 * 365);
  garden->Add(plant);
  QTableView view;
  view.setProperty("binding.value",
                   "{Binding Path=name, Editor=combo, Options=kinds}\n"
                   "{Binding Path=qty, Editor=date}\n"
                   "{Binding Path=qty, Editor=spin}");
  TableModelOverViewModel* model = TableModelOverViewModel::Create(garden, &view);
  garden->Release();
  ASSERT_TRUE(model);
  ASSERT_TRUE(ovui_test::Show(&view));

  auto* combo = qobject_cast<QComboBox*>(ovui_test::OpenEditor(&view, model->index(0, 0)));
  ASSERT_TRUE(combo);
  EXPECT_EQ(combo->count(), 2);  // the trailing newline adds no empty choice
  EXPECT_EQ(combo->currentText(), "nut");
  combo->setCurrentIndex(0);
  view.itemDelegate()->setModelData(combo, model, model->index(0, 0));
  EXPECT_EQ(plant->name, "fruit");

  const QDate shown = QDateTime::fromSecsSinceEpoch(plant->qty).date();
  EXPECT_EQ(model->index(0, 1).data(), QVariant(shown));
  auto* date = qobject_cast<QDateEdit*>(ovui_test::OpenEditor(&view, model->index(0, 1)));
  ASSERT_TRUE(date);
  EXPECT_EQ(date->date(), shown);
  date->setDate(QDate(2001, 2, 3));
  view.itemDelegate()->setModelData(date, model, model->index(0, 1));
  EXPECT_EQ(plant->qty, QDate(2001, 2, 3).startOfDay().toSecsSinceEpoch());
  EXPECT_NE(qobject_cast<QSpinBox*>(ovui_test::OpenEditor(&view, model->index(0, 2))), nullptr);
}

}  // namespace
