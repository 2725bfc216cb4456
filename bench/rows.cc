#include "rows.h"

#include <cstring>
#include <random>

namespace bench {

const std::vector<RowData>& Data() {
  static const std::vector<RowData> data = [] {
    std::mt19937 random(7);
    std::vector<RowData> rows(kRows);
    for (int i = 0; i < kRows; ++i) {
      rows[i].number = static_cast<int>(random() % 1000000);
      rows[i].word = "item " + std::to_string(random() % 1000000);
      rows[i].shuffle = static_cast<int>(random());
    }
    return rows;
  }();
  return data;
}

Row::Row(const RowData& d) : number(d.number), word(d.word), shuffle(d.shuffle) {
  InstallProp("number", &this->number);
  InstallProp("word", &this->word);
  InstallProp("shuffle", &this->shuffle);
}

bool Rows::FilterOne(vm::ViewModel* item, const std::string& rule) {
  base::Value word;
  item->GetPropW("word", word);
  return std::strstr(word.Str(), rule.c_str()) != nullptr;
}

Rows* FillOvui() {
  auto* rows = new Rows();
  rows->BeginBatch();
  for (const RowData& d : Data())
    rows->Add(new Row(d));
  rows->EndBatch();
  return rows;
}

QStandardItemModel* FillQt() {
  auto* model = new QStandardItemModel(0, 3);
  for (const RowData& d : Data()) {
    QList<QStandardItem*> row;
    row << new QStandardItem() << new QStandardItem(QString::fromStdString(d.word))
        << new QStandardItem();
    row[0]->setData(d.number, Qt::DisplayRole);
    row[2]->setData(d.shuffle, Qt::DisplayRole);
    model->appendRow(row);
  }
  return model;
}

}  // namespace bench
