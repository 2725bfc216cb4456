#include "mvvm/imodel.h"

#include "base/log.h"

namespace vm {

namespace {
const char kPropChanged[] = "prop-changed";
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
  this->event->SetType(kPropChanged);
  this->event->SetParam("name", name);
  this->event->SetParam("old", old);
  this->event->SetParam("value", value);
  this->event->SetParam("kind", "PropChange");
  return Emit(this->event);
}

bool IModel::EmitPropsChange() {
  if (!this->emitter || !this->event) return false;
  this->event->SetParam("name", "");
  this->event->SetParam("kind", "PropsChange");
  this->event->SetType(kPropChanged);
  return Emit(this->event);
}

}  // namespace vm
