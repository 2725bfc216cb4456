#include "events/event_emitter.h"

#include <gtest/gtest.h>

#include <deque>

#include "support/recording_listener.h"
#include "support/toy_objects.h"

using events::Event;
using ovui_test::RecordingListener;

namespace {

// Unregisters itself when destroyed, as library listeners do, also from inside Off or Reset.
struct Destructing : ovui_test::Tracked<events::EventListener> {
  Destructing(events::EventEmitter* e, int* destroyed) : Tracked(destroyed), emitter(e) {}
  ~Destructing() override { emitter->Off("x", this); }
  bool OnEvent(Event*) override { return false; }
  events::EventEmitter* emitter;
};

}  // namespace

TEST(EventEmitterTest, ReleasesDeliversASnapshotInOrderAndStops) {
  std::vector<std::string> order;
  RecordingListener a(&order, "a"), b(&order, "b"), c(&order, "c");  // outlive the emitter
  std::deque<RecordingListener> many;
  auto fwd = [](void* l, Event* e) { return static_cast<RecordingListener*>(l)->OnEvent(e); };
  events::FunctionListener to_b{fwd, &b}, none;  // none has no callback: handles nothing
  events::EventEmitter emitter;
  Event x{"x"};
  const auto state = [&] {
    return std::vector<int>{a.RefCount(), b.RefCount(), emitter.Exist("x", &a),
                            emitter.Exist("y", &a)};
  };
  for (int i = 0; i < 40; ++i)  // more listeners than the stack snapshot holds
    emitter.On("x", &many.emplace_back(&order, std::to_string(i)));
  emitter.Emit(&x);
  EXPECT_TRUE(order.size() == 40u && order.back() == "39");
  order.clear();
  for (const char* type : {"x", "x", "y"})  // a repeat takes no second reference
    emitter.On(type, &a);
  EXPECT_EQ(state(), (std::vector<int>{3, 1, 1, 1}));
  for (const char* type : {"x", "x", "nope"})  // unknown pairs change nothing
    emitter.Off(type, &a);
  EXPECT_EQ(state(), (std::vector<int>{2, 1, 0, 1}));
  emitter.On("x", &b);
  emitter.Reset();
  EXPECT_EQ(state(), (std::vector<int>{1, 1, 0, 0}));

  int destroyed = 0;
  for (bool by_reset : {false, true}) {
    auto* d = new Destructing(&emitter, &destroyed);
    emitter.On("x", d);
    d->Release();
    EXPECT_TRUE(by_reset ? emitter.Reset() : emitter.Off("x", d));
    EXPECT_EQ(destroyed, 1 + by_reset);
  }

  x.SetParam("ratio", 0.5);   // integers and pointers show in the array tests' event texts
  x.SetParam("name", "age");  // listed first: parameters go in name order
  for (events::EventListener* l : std::vector<events::EventListener*>{&none, &a, &to_b})
    emitter.On("x", l);
  emitter.On("w", &c);  // another type, sorted first
  a.hook = [&](Event*) {
    emitter.On("x", &c);      // added during Emit: not called this time
    emitter.Off("x", &to_b);  // removed during Emit: still called this time
  };
  emitter.Emit(&x);
  emitter.Emit(&x);  // the hook again: both calls now change nothing
  a.stop = true;
  emitter.Emit(&x);
  EXPECT_EQ(order, (std::vector<std::string>{"a", "b", "a", "c", "a"}));
  EXPECT_EQ(c.events, std::vector<std::string>{"x:name=age ratio=0.500000 "});
}
