#ifndef OVUI_TESTS_SUPPORT_RECORDING_LISTENER_H_
#define OVUI_TESTS_SUPPORT_RECORDING_LISTENER_H_

#include <functional>
#include <string>
#include <vector>

#include "events/event_listener.h"

namespace ovui_test {

// Records every event it receives as its ToString() text. Optionally stops
// delivery, and runs a hook inside OnEvent (to add or remove listeners there).
class RecordingListener : public events::EventListener {
 public:
  explicit RecordingListener(std::vector<std::string>* shared_log = nullptr, std::string tag = "")
      : shared_log(shared_log), tag(std::move(tag)) {}

  bool OnEvent(events::Event* e) override {
    events.push_back(e->ToString());
    if (shared_log) shared_log->push_back(tag);
    if (hook) hook(e);
    return stop;
  }

  std::vector<std::string> events;
  bool stop = false;
  std::function<void(events::Event*)> hook;

 private:
  std::vector<std::string>* shared_log;
  std::string tag;
};

}  // namespace ovui_test

#endif  // OVUI_TESTS_SUPPORT_RECORDING_LISTENER_H_
