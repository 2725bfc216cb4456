#include "mvvm/data_binding.h"

#include "base/log.h"
#include "mvvm/view_model.h"

namespace vm {

void DataBinding::AsOneWay() {
  if (this->mode != MODE_ONCE) this->mode = MODE_ONE_WAY;
}

bool DataBinding::GetPropW(ViewModel* vm, base::Value& value) const {
  OVUI_CHECK(vm != NULL, false);
  const bool ok = vm->EvalProp(this->path, value);
  if (!ok || this->converter.empty()) return ok;

  OVUI_CHECK(vm->HasConverter(this->converter), false);
  base::Value cvalue;
  OVUI_CHECK(vm->Convert(this->converter, value, cvalue), false);
  value = cvalue;
  return true;
}

bool DataBinding::SetPropW(ViewModel* vm, const base::Value& value, std::string& error) const {
  OVUI_CHECK(vm != NULL, false);
  if (!vm->HasProp(this->path)) {
    error = "no prop " + this->path;
    return false;
  }

  const base::Value* v = &value;
  base::Value cvalue;
  if (!this->converter.empty()) {
    if (!vm->HasConverter(this->converter)) {
      error = "no converter " + this->converter;
      return false;
    }
    if (!vm->ConvertBack(this->converter, value, cvalue)) {
      error = "converter failed: " + this->converter;
      return false;
    }
    v = &cvalue;
  }

  // The validator sees the converted value, the one that would be stored.
  if (!this->validator.empty()) {
    if (!vm->HasValidator(this->validator)) {
      error = "no validator " + this->validator;
      return false;
    }
    if (!vm->IsValidProp(this->validator, *v, error)) return false;
  }
  return vm->SetPropW(this->path, *v);
}

}  // namespace vm
