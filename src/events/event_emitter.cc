#include "events/event_emitter.h"

#include <algorithm>
#include <memory>

#include "base/log.h"

namespace events {

namespace {

bool Deliver(EventListener* l, Event* e, const FunctionListener* fn) {
  return fn ? fn->Call(e) : l->OnEvent(e);
}

}  // namespace

EventEmitter::~EventEmitter() {
  Reset();
}

bool EventEmitter::On(const std::string& type, EventListener* l) {
  OVUI_CHECK(l != NULL, false);
  auto& list = this->listeners[type];
  if (std::find(list.begin(), list.end(), l) != list.end()) return true;
  l->AddRef();
  list.push_back(l);
  return true;
}

bool EventEmitter::Off(const std::string& type, EventListener* l) {
  auto it = this->listeners.find(type);
  if (it == this->listeners.end()) return true;
  auto& list = it->second;
  auto pos = std::find(list.begin(), list.end(), l);
  if (pos == list.end()) return true;
  // Remove before releasing: a listener's destructor may call Off again.
  list.erase(pos);
  l->Release();
  return true;
}

bool EventEmitter::Exist(const std::string& type, EventListener* l) const {
  auto it = this->listeners.find(type);
  if (it == this->listeners.end()) return false;
  return std::find(it->second.begin(), it->second.end(), l) != it->second.end();
}

bool EventEmitter::Emit(Event* e) {
  OVUI_CHECK(e != NULL, false);
  auto it = this->last;
  if (it == this->listeners.end() || it->first != e->GetType()) {
    it = this->listeners.find(e->GetType());
    if (it == this->listeners.end()) return true;
    this->last = it;
  }
  if (it->second.empty()) return true;

  // The snapshot lives on the stack unless the list is unusually long, so an
  // emit costs no heap allocation.
  constexpr size_t kInline = 16;
  EventListener* inline_snapshot[kInline];
  std::unique_ptr<EventListener*[]> heap_snapshot;
  const size_t n = it->second.size();
  EventListener** snapshot = inline_snapshot;
  if (n > kInline) {
    heap_snapshot.reset(new EventListener*[n]);
    snapshot = heap_snapshot.get();
  }
  std::copy(it->second.begin(), it->second.end(), snapshot);

  for (size_t i = 0; i < n; ++i) {
    EventListener* l = snapshot[i];
    if (Deliver(l, e, l->as_function)) break;
  }
  return true;
}

bool EventEmitter::Reset() {
  // Detach the map first: releasing may destroy a listener that calls Off.
  Lists old;
  old.swap(this->listeners);
  this->last = this->listeners.end();
  for (auto& [type, list] : old) {
    for (EventListener* l : list)
      l->Release();
  }
  return true;
}

}  // namespace events
