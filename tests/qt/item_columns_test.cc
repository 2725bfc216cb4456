#include "qt/item_columns.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QDateTime>
#include <QSpinBox>
#include <QTableView>
#include <QTest>
#include <string>

#include "mvvm/view_model_array.h"
#include "mvvm/view_model_item.h"
#include "qt/table_model.h"

namespace {

struct Plant : vm::ViewModelItem {
  Plant() {
    InstallProp("kind", &this->kind);
    InstallProp("since", &this->since);
    InstallProp("qty", &this->qty);
  }
  std::string kind = "nut";
  int since = 86400 * 365;  // seconds since the epoch
  int qty = 2;
};

// The choices live on the list, not on its rows.
struct Garden : vm::ViewModelArray {
  Garden() { InstallProp("kinds", &this->kinds); }
  std::string kinds = "fruit\nnut\n";
};

// Opens the cell's editor; moving the current cell closes the one before.
QWidget* Open(QTableView& view, const QModelIndex& cell) {
  view.setCurrentIndex(cell);
  view.edit(cell);
  return view.indexWidget(cell);
}

// The editors that Editor= names, through a real table.
TEST(ItemColumnsTest, TheDelegateOpensTheNamedEditor) {
  auto* garden = new Garden;
  garden->Add(new Plant);
  QTableView view;
  view.setProperty("binding.value",
                   "{Binding Path=kind, Editor=combo, Options=kinds}\n"
                   "{Binding Path=since, Editor=date}\n"
                   "{Binding Path=qty, Editor=spin}");
  TableModelOverViewModel* model = TableModelOverViewModel::Create(garden, &view);
  garden->Release();
  ASSERT_TRUE(model);
  view.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
  auto* plant = static_cast<Plant*>(garden->Get(0));

  const QModelIndex kind = model->index(0, 0);
  auto* combo = qobject_cast<QComboBox*>(Open(view, kind));
  ASSERT_TRUE(combo);
  EXPECT_EQ(combo->count(), 2);  // the trailing newline adds no empty choice
  EXPECT_EQ(combo->currentText(), "nut");
  combo->setCurrentIndex(0);
  view.itemDelegate()->setModelData(combo, model, kind);
  EXPECT_EQ(plant->kind, "fruit");

  // Seconds since the epoch show and edit as a date.
  const QModelIndex since = model->index(0, 1);
  const QDate shown = QDateTime::fromSecsSinceEpoch(plant->since).date();
  EXPECT_EQ(since.data(), QVariant(shown));
  auto* date = qobject_cast<QDateEdit*>(Open(view, since));
  ASSERT_TRUE(date);
  EXPECT_EQ(date->date(), shown);
  date->setDate(QDate(2001, 2, 3));
  view.itemDelegate()->setModelData(date, model, since);
  EXPECT_EQ(plant->since, QDate(2001, 2, 3).startOfDay().toSecsSinceEpoch());

  const QModelIndex qty = model->index(0, 2);
  EXPECT_NE(qobject_cast<QSpinBox*>(Open(view, qty)), nullptr);
}

}  // namespace
