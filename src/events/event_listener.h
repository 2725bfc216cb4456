#ifndef OVUI_EVENTS_EVENT_LISTENER_H_
#define OVUI_EVENTS_EVENT_LISTENER_H_

#include "base/ref_obj.h"
#include "events/event.h"

namespace events {

class FunctionListener;

// Receives events from the emitters it is registered with. Emitters hold one
// reference per registration.
class EventListener : public base::RefObj<EventListener>, public base::NoneClonable {
 public:
  // Returns true when the event is handled: no further listener gets it.
  virtual bool OnEvent(Event* e) = 0;

 private:
  friend class EventEmitter;
  friend class FunctionListener;
  // Set only by FunctionListener, whose OnEvent is final, so that the emitter
  // can call the callback without a virtual call.
  const FunctionListener* as_function = nullptr;
};

// A listener over a plain function, so that code can subscribe without
// writing a class. Without a callback it handles nothing.
class FunctionListener : public EventListener {
 public:
  using Callback = bool (*)(void* ctx, Event* e);

  explicit FunctionListener(Callback callback = nullptr, void* ctx = nullptr)
      : callback(callback), ctx(ctx) {
    this->as_function = this;
  }

  void SetCallback(Callback callback, void* ctx) {
    this->callback = callback;
    this->ctx = ctx;
  }

  bool OnEvent(Event* e) final { return Call(e); }
  bool Call(Event* e) const { return this->callback ? this->callback(this->ctx, e) : false; }

 private:
  Callback callback;
  void* ctx;
};

}  // namespace events

#endif  // OVUI_EVENTS_EVENT_LISTENER_H_
