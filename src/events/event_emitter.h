#ifndef OVUI_EVENTS_EVENT_EMITTER_H_
#define OVUI_EVENTS_EVENT_EMITTER_H_

#include <map>
#include <string>
#include <vector>

#include "base/ref_obj.h"
#include "events/event.h"
#include "events/event_listener.h"

namespace events {

// Delivers events synchronously to the listeners registered for their type,
// in registration order, until one returns true.
//
// Delivery walks a snapshot of the listeners taken when Emit starts: a
// listener added during Emit is not called for that event, and one removed
// during Emit is still called if it comes later. No reference is taken for
// the walk, so listeners must stay alive while an event is delivered.
class EventEmitter : public base::RefObj<EventEmitter>, public base::NoneClonable {
 public:
  EventEmitter() = default;
  ~EventEmitter() override;

  // Registers `l` for `type` and takes a reference; a repeat is ignored, a
  // null `l` is logged and refused.
  bool On(const std::string& type, EventListener* l);
  // Unregisters `l` and releases the emitter's reference; unknown pairs are ignored.
  bool Off(const std::string& type, EventListener* l);
  bool Exist(const std::string& type, EventListener* l) const;
  // False (logged) only for a null `e`.
  bool Emit(Event* e);
  // Releases every listener and forgets every type.
  bool Reset();

 private:
  using Lists = std::map<std::string, std::vector<EventListener*>>;
  Lists listeners;
  // The list last emitted to: a model emits the same type again and again.
  // Map entries never move, so it stays valid until Reset.
  Lists::iterator last = listeners.end();
};

}  // namespace events

#endif  // OVUI_EVENTS_EVENT_EMITTER_H_
