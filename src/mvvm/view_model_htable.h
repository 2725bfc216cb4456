#ifndef OVUI_MVVM_VIEW_MODEL_HTABLE_H_
#define OVUI_MVVM_VIEW_MODEL_HTABLE_H_

#include <string>

#include "mvvm/view_model.h"

namespace vm {

// A table whose rows are supplied by a subclass instead of being child view
// models; in a horizontal table each row (record) is shown as a column and
// its fields run down the side. It keeps a current row (property
// "_current_") and announces changes with the list event names, carrying
// ranges:
//   BeforeAdd(start, end)     "before-item-add"    "start", "end" (inclusive)
//   AfterAdd()                "item-add"           no parameters
//   BeforeRemove(start, end)  "before-item-remove" "start", "end"
//   AfterRemove()             "item-remove"        no parameters
//   Update()                  "update"             no parameters: re-read all
//   current row changes       "current-changed"    "value": the current row
// The subclass calls these around its own changes; a consumer keeps the range
// from the "before" event.
class ViewModelHTable : public ViewModel {
 public:
  explicit ViewModelHTable(IModel* model = nullptr);

  // The number of rows.
  virtual unsigned int Size() const = 0;
  // Reads the field `name` of row `row` into `value`; false when there is none.
  virtual bool GetCell(unsigned int row, const std::string& name, base::Value& value) const = 0;
  // Writes the field `name` of row `row`; false when refused.
  virtual bool SetCell(unsigned int row, const std::string& name, const base::Value& value) = 0;

  unsigned int GetCurrent() const { return this->current; }
  // Moves to row `index`; past the end it is logged and refused.
  bool SetCurrent(unsigned int index);
  bool BeforeAdd(int start, int end);
  bool AfterAdd();
  bool BeforeRemove(int start, int end);
  bool AfterRemove();
  bool Update();
  bool EmitCurrentChangedEvent();

 protected:
  unsigned int current = 0;

 private:
  bool EmitRange(const char* type, int start, int end);
  bool EmitPlain(const char* type);
  bool GetCurrentProp(base::Value& v) const;
  bool SetCurrentProp(const base::Value& v);
};

}  // namespace vm

#endif  // OVUI_MVVM_VIEW_MODEL_HTABLE_H_
