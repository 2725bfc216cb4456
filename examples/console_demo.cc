// A console tour of ovui: a model with two properties announces each change
// as a "prop-changed" event, and a listener prints it.
#include <cstdio>
#include <string>

#include "ovui.h"

namespace {

// A tiny model: two named properties and an emitter that announces changes.
class Person {
 public:
  void Set(const std::string& name, const base::Value& value) {
    base::Value& slot = name == "name" ? this->name : this->age;
    if (slot.Cmp(value) == 0) return;  // unchanged: nothing to announce
    events::Event e("prop-changed");
    e.SetParam("kind", "PropChange");
    e.SetParam("name", name);
    e.SetParam("old", slot);
    e.SetParam("value", value);
    slot = value;
    this->emitter.Emit(&e);
  }
  events::EventEmitter& Emitter() { return this->emitter; }

 private:
  base::Value name{"Ada"};
  base::Value age{36};
  events::EventEmitter emitter;
};

bool PrintEvent(void*, events::Event* e) {
  std::printf("  event: %s\n", e->ToString().c_str());
  return false;
}

}  // namespace

int main() {
  Person person;
  auto* printer = new events::FunctionListener(&PrintEvent, nullptr);
  person.Emitter().On("prop-changed", printer);

  std::printf("set name = Grace\n");
  person.Set("name", "Grace");
  std::printf("set age = 37\n");
  person.Set("age", 37);
  std::printf("set age = 37 again (no change, no event)\n");
  person.Set("age", 37);

  person.Emitter().Off("prop-changed", printer);
  printer->Release();
  return 0;
}
