#ifndef OVUI_MVVM_VIEW_MODEL_ITEM_H_
#define OVUI_MVVM_VIEW_MODEL_ITEM_H_

#include <string>

#include "mvvm/view_model.h"

namespace vm {

// One row of a list view model. Its property writes are announced on the
// root of the nest (with the new value as both "old" and "value"), so that
// one listener there hears about every row; the read-only property "_index_"
// is its position in the list.
class ViewModelItem : public ViewModel {
 public:
  explicit ViewModelItem(IModel* model = nullptr);

  int GetType() const override;
  bool SetPropW(const std::string& name, const base::Value& value) override;

  // The position in the parent list (-1 while hidden by a filter); without
  // a parent list, logged and -1.
  int GetIndex() const;

 private:
  bool GetIndexProp(base::Value& v) const;
};

}  // namespace vm

#endif  // OVUI_MVVM_VIEW_MODEL_ITEM_H_
