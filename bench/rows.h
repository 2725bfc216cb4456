#ifndef OVUI_BENCH_ROWS_H_
#define OVUI_BENCH_ROWS_H_

#include <QStandardItemModel>
#include <string>
#include <vector>

#include "ovui.h"

namespace bench {

constexpr int kRows = 100000;

// The same data for both sides: a number, a word, and a shuffling key.
struct RowData {
  int number;
  std::string word;
  int shuffle;
};

// kRows rows, the same in every run.
const std::vector<RowData>& Data();

class Row : public vm::ViewModelItem {
 public:
  explicit Row(const RowData& d);
  int number;
  std::string word;
  int shuffle;
};

// Rows whose word contains the rule text, read as any application would,
// through the property.
class Rows : public vm::ViewModelArrayExt {
 public:
  Rows() { compare_is_own = true; }  // sorts by key: each key read once
  bool FilterOne(vm::ViewModel* item, const std::string& rule) override;
};

// Data() as a list of view models, and as a three-column item model.
Rows* FillOvui();
QStandardItemModel* FillQt();

}  // namespace bench

#endif  // OVUI_BENCH_ROWS_H_
