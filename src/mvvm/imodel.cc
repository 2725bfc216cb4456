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

IModel::EventLease::EventLease(IModel* owner, const std::string& type) : owner(owner) {
  if (!owner->emitter || !owner->event) return;
  if (owner->event_leased) {
    this->event = new PropChangeEvent();
    this->own = true;
  } else {
    this->event = owner->event;
    owner->event_leased = true;
  }
  // Compared first: the reused event usually has the type already.
  if (this->event->GetType() != type) this->event->SetType(type);
}

IModel::EventLease::~EventLease() {
  if (this->own) {
    this->event->Release();
  } else if (this->event) {
    this->owner->event_leased = false;
  }
}

bool IModel::EmitPropChange(const std::string& name, const base::Value& old,
                            const base::Value& value) {
  return EmitChange(name, kPropChange, sizeof(kPropChange) - 1, &old, &value);
}

bool IModel::EmitPropsChange() {
  return EmitChange(std::string(), kPropsChange, sizeof(kPropsChange) - 1, nullptr, nullptr);
}

bool IModel::EmitChange(const std::string& name, const char* kind, unsigned kind_len,
                        const base::Value* old, const base::Value* value) {
  static const std::string type(kPropChanged);
  EventLease lease(this, type);
  PropChangeEvent* e = static_cast<PropChangeEvent*>(lease.get());
  if (!e) return false;
  if (!e->name) {
    e->name = &e->Param("name");
    e->kind = &e->Param("kind");
  }
  e->name->StrIfChanged(name.c_str(), static_cast<unsigned>(name.size()));
  e->kind->StrIfChanged(kind, kind_len);
  if (old) {
    if (!e->old) {
      e->old = &e->Param("old");
      e->value = &e->Param("value");
    }
    *e->old = *old;
    *e->value = *value;
  }
  return Emit(e);
}

}  // namespace vm
