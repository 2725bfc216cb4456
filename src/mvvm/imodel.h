#ifndef OVUI_MVVM_IMODEL_H_
#define OVUI_MVVM_IMODEL_H_

#include <string>

#include "base/ref_obj.h"
#include "base/value.h"
#include "events/event.h"
#include "events/event_emitter.h"
#include "events/event_listener.h"

namespace vm {

// A set of named properties read and written as values, announcing changes
// as "prop-changed" events.
//
// Every change is announced through one reusable event object: "kind" is
// "PropChange" (with "name", "old", "value") or "PropsChange" (all
// properties, "name" empty). Parameters are only ever overwritten, so a
// "PropsChange" still carries the "old" and "value" of the last
// "PropChange": listeners look at "kind" first. A change announced while
// another is being delivered (a listener writing a property) goes out in an
// event of its own, so the outer delivery's listeners still read theirs.
//
// Events can be blocked (calls nest). Changes made while blocked are dropped,
// not queued; call EmitPropsChange() afterwards to resynchronise listeners.
class IModel : public base::RefObj<IModel>, public base::NoneClonable {
 public:
  IModel() = default;
  ~IModel() override;

  virtual bool HasProp(const std::string& name) const = 0;
  virtual bool SetPropW(const std::string& name, const base::Value& v) = 0;
  virtual bool GetPropW(const std::string& name, base::Value& v) const = 0;

  // Registers `listener` for events of `type`; the emitter and the reusable
  // event are created on first use. Null listeners are logged and refused.
  virtual bool On(const std::string& type, events::EventListener* listener);
  virtual bool Off(const std::string& type, events::EventListener* listener);
  // Delivers `e`; false without delivery while blocked or without listeners.
  virtual bool Emit(events::Event* e);
  virtual bool BlockEvents();
  virtual bool UnblockEvents();
  // Fills the reusable event as a "PropChange" and emits it.
  virtual bool EmitPropChange(const std::string& name, const base::Value& old,
                              const base::Value& value);
  // Emits a "PropsChange": every property may have changed.
  virtual bool EmitPropsChange();

  bool IsBlocked() const { return this->block_event_nr != 0; }

 protected:
  // The event to announce through: the reusable one, or, while that one is
  // being delivered, an event of its own, so that a listener announcing
  // something else does not rewrite what the outer delivery's remaining
  // listeners read. Empty (null) when nobody listens.
  class EventLease {
   public:
    EventLease(IModel* owner, const std::string& type);
    ~EventLease();
    EventLease(const EventLease&) = delete;
    EventLease& operator=(const EventLease&) = delete;
    events::Event* get() const { return this->event; }

   private:
    IModel* owner;
    events::Event* event = nullptr;
    bool own = false;
  };

  int block_event_nr = 0;
  events::Event* event = nullptr;
  events::EventEmitter* emitter = nullptr;

 private:
  bool EmitChange(const std::string& name, const char* kind, unsigned kind_len,
                  const base::Value* old, const base::Value* value);

  bool event_leased = false;
};

}  // namespace vm

#endif  // OVUI_MVVM_IMODEL_H_
