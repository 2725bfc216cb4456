#include "mvvm/view_model_item.h"

#include "base/log.h"
#include "mvvm/view_model_array.h"

namespace vm {

ViewModelItem::ViewModelItem(IModel* model) : ViewModel(model) {
  InstallProp("_index_", &ViewModelItem::GetIndexProp, nullptr);
}

int ViewModelItem::GetType() const {
  return VIEW_MODEL_ITEM;
}

bool ViewModelItem::SetPropW(const std::string& name, const base::Value& value) {
  const bool ok = ViewModel::SetPropW(name, value);
  if (ok) GetRoot()->EmitPropChange(name, value, value);
  return ok;
}

int ViewModelItem::GetIndex() const {
  const auto* parent = dynamic_cast<const ViewModelArray*>(GetParent());
  OVUI_CHECK(parent != NULL, -1);
  return parent->IndexOf(this);
}

bool ViewModelItem::GetIndexProp(base::Value& v) const {
  v.I64(GetIndex());
  return true;
}

}  // namespace vm
