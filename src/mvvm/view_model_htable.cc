#include "mvvm/view_model_htable.h"

#include <climits>

#include "base/log.h"

namespace vm {

ViewModelHTable::ViewModelHTable(IModel* model) : ViewModel(model) {
  InstallProp("_current_", &ViewModelHTable::GetCurrentProp, &ViewModelHTable::SetCurrentProp);
}

bool ViewModelHTable::SetCurrent(unsigned int index) {
  OVUI_CHECK(index < this->Size(), false);
  this->current = index;
  EmitPropsChange();
  EmitCurrentChangedEvent();
  return true;
}

bool ViewModelHTable::BeforeAdd(int start, int end) {
  return EmitRange("before-item-add", start, end);
}

bool ViewModelHTable::AfterAdd() {
  return EmitPlain("item-add");
}

bool ViewModelHTable::BeforeRemove(int start, int end) {
  return EmitRange("before-item-remove", start, end);
}

bool ViewModelHTable::AfterRemove() {
  return EmitPlain("item-remove");
}

bool ViewModelHTable::Update() {
  return EmitPlain("update");
}

bool ViewModelHTable::EmitCurrentChangedEvent() {
  if (!this->emitter) return false;
  events::Event e("current-changed");
  e.SetParam("value", static_cast<long long>(this->current));
  return Emit(&e);
}

bool ViewModelHTable::EmitRange(const char* type, int start, int end) {
  if (!this->emitter) return false;
  events::Event e(type);
  e.SetParam("end", end);
  e.SetParam("start", start);
  return Emit(&e);
}

bool ViewModelHTable::EmitPlain(const char* type) {
  if (!this->emitter) return false;
  events::Event e(type);
  return Emit(&e);
}

bool ViewModelHTable::GetCurrentProp(base::Value& v) const {
  v.I64(GetCurrent());
  return true;
}

bool ViewModelHTable::SetCurrentProp(const base::Value& v) {
  const long long index = v.I64();
  // Refused whole: cut to 32 bits, 2^32 + 1 would select row 1.
  OVUI_CHECK(index >= 0 && index <= UINT_MAX, false);
  return SetCurrent(static_cast<unsigned int>(index));
}

}  // namespace vm
