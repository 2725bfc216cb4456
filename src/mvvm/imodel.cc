#include "mvvm/imodel.h"

#include "base/log.h"

namespace vm {

namespace {
const char kPropChanged[] = "prop-changed";
const char kPropChange[] = "PropChange";
const char kPropsChange[] = "PropsChange";

// The reusable event, with its parameters at hand, so that a change is
// announced without looking names up or reallocating unchanged texts. The
// slots are filled when first set, as SetParam would create them.
struct PropChangeEvent : events::Event {
  PropChangeEvent() : events::Event(kPropChanged) {}
  base::Value* name = nullptr;
  base::Value* old = nullptr;
  base::Value* value = nullptr;
  base::Value* kind = nullptr;
};

PropChangeEvent* Reusable(events::Event* e) {
  return static_cast<PropChangeEvent*>(e);
}

// A view request may have retyped the reused event; compared as a string
// of known length rather than against a C string.
void RetypeAsChange(events::Event* e) {
  static const std::string type(kPropChanged);
  if (e->GetType() != type) e->SetType(type);
}

}  // namespace

IModel::~IModel() {
  base::SafeRelease(this->event);
  base::SafeRelease(this->emitter);
}

bool IModel::On(const std::string& type, events::EventListener* listener) {
  if (!this->emitter) {
    this->emitter = new events::EventEmitter();
    this->event = new PropChangeEvent();
  }
  OVUI_CHECK(listener != NULL && this->emitter != NULL, false);
  return this->emitter->On(type, listener);
}

bool IModel::Off(const std::string& type, events::EventListener* listener) {
  OVUI_CHECK(listener != NULL && this->emitter != NULL, false);
  return this->emitter->Off(type, listener);
}

bool IModel::Emit(events::Event* e) {
  if (this->block_event_nr != 0 || !e || !this->emitter) return false;
  return this->emitter->Emit(e);
}

bool IModel::BlockEvents() {
  ++this->block_event_nr;
  return true;
}

bool IModel::UnblockEvents() {
  OVUI_CHECK(this->block_event_nr > 0, false);
  --this->block_event_nr;
  return true;
}

bool IModel::EmitPropChange(const std::string& name, const base::Value& old,
                            const base::Value& value) {
  if (!this->emitter || !this->event) return false;
  RetypeAsChange(this->event);
  SetNameAndKind(name, kPropChange, sizeof(kPropChange) - 1);
  PropChangeEvent* e = Reusable(this->event);
  if (!e->old) {
    e->old = &e->Param("old");
    e->value = &e->Param("value");
  }
  *e->old = old;
  *e->value = value;
  return Emit(this->event);
}

void IModel::SetNameAndKind(const std::string& name, const char* kind, unsigned kind_len) {
  PropChangeEvent* e = Reusable(this->event);
  if (!e->name) {
    e->name = &e->Param("name");
    e->kind = &e->Param("kind");
  }
  e->name->StrIfChanged(name.c_str(), static_cast<unsigned>(name.size()));
  e->kind->StrIfChanged(kind, kind_len);
}

bool IModel::EmitPropsChange() {
  if (!this->emitter || !this->event) return false;
  SetNameAndKind(std::string(), kPropsChange, sizeof(kPropsChange) - 1);
  RetypeAsChange(this->event);
  return Emit(this->event);
}

}  // namespace vm
