#include "mvvm/imodel.h"

#include "base/log.h"

namespace vm {

namespace {
const char kPropChanged[] = "prop-changed";
const char kPropChange[] = "PropChange";
const char kPropsChange[] = "PropsChange";
}  // namespace

IModel::~IModel() {
  base::SafeRelease(this->event);
  base::SafeRelease(this->emitter);
}

bool IModel::On(const std::string& type, events::EventListener* listener) {
  if (!this->emitter) {
    this->emitter = new events::EventEmitter();
    this->event = new events::Event(kPropChanged);
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
  if (this->event->GetType() != kPropChanged) this->event->SetType(kPropChanged);
  SetNameAndKind(name, kPropChange, sizeof(kPropChange) - 1);
  if (!this->params.old) {
    this->params.old = &this->event->Param("old");
    this->params.value = &this->event->Param("value");
  }
  *this->params.old = old;
  *this->params.value = value;
  return Emit(this->event);
}

void IModel::SetNameAndKind(const std::string& name, const char* kind, unsigned kind_len) {
  // Parameters appear when first set, as SetParam would make them.
  if (!this->params.name) {
    this->params.name = &this->event->Param("name");
    this->params.kind = &this->event->Param("kind");
  }
  this->params.name->StrIfChanged(name.c_str(), static_cast<unsigned>(name.size()));
  this->params.kind->StrIfChanged(kind, kind_len);
}

bool IModel::EmitPropsChange() {
  if (!this->emitter || !this->event) return false;
  SetNameAndKind(std::string(), kPropsChange, sizeof(kPropsChange) - 1);
  if (this->event->GetType() != kPropChanged) this->event->SetType(kPropChanged);
  return Emit(this->event);
}

}  // namespace vm
