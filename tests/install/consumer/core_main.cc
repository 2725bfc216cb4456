#include <cstdio>

#include "ovui.h"

namespace {

bool Print(void*, events::Event* e) {
  std::printf("%s\n", e->ToString().c_str());
  return false;
}

}  // namespace

int main() {
  auto* emitter = new events::EventEmitter();
  auto* listener = new events::FunctionListener(&Print, nullptr);
  emitter->On("prop-changed", listener);
  events::Event e("prop-changed");
  e.SetParam("name", "title");
  emitter->Emit(&e);
  listener->Release();
  emitter->Release();
  return 0;
}
