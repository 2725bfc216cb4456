#include "events/event_emitter.h"

#include <gtest/gtest.h>

#include <deque>

#include "support/recording_listener.h"
#include "support/toy_objects.h"

using events::Event;
using ovui_test::RecordingListener;

namespace {

bool Forward(void* listener, Event* e) {
  return static_cast<RecordingListener*>(listener)->OnEvent(e);
}

struct EventEmitterTest : testing::Test {
  std::vector<std::string> order;
  std::deque<RecordingListener> listeners;  // outlive the emitter: never deleted through it
  RecordingListener& a = listeners.emplace_back(&order, "a");
  RecordingListener& b = listeners.emplace_back(&order, "b");
  RecordingListener& c = listeners.emplace_back(&order, "c");
  events::FunctionListener to_b{&Forward, &b}, none;  // none has no callback: handles nothing
  events::EventEmitter emitter;
  Event x{"x"};
};

// Unregisters itself when destroyed, as library listeners do.
struct Destructing : ovui_test::Tracked<events::EventListener> {
  Destructing(events::EventEmitter* e, int* destroyed) : Tracked(destroyed), emitter(e) {}
  ~Destructing() override { emitter->Off("x", this); }
  bool OnEvent(Event*) override { return false; }
  events::EventEmitter* emitter;
};

}  // namespace

TEST_F(EventEmitterTest, DeliversASnapshotInOrderUntilAListenerStops) {
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
  a.hook = nullptr;
  emitter.Emit(&x);
  a.stop = true;
  emitter.Emit(&x);
  EXPECT_EQ(order, (std::vector<std::string>{"a", "b", "a", "c", "a"}));
  EXPECT_EQ(c.events, std::vector<std::string>{"x:name=age ratio=0.500000 "});
  EXPECT_TRUE(x.GetParam("missing").IsNull());
}

TEST_F(EventEmitterTest, ReleasesOnOffAndReset) {
  const auto state = [&] {
    return std::vector<int>{a.RefCount(), b.RefCount(), emitter.Exist("x", &a),
                            emitter.Exist("y", &a)};
  };
  for (const char* type : {"x", "x", "y"})  // a repeat takes no second reference
    emitter.On(type, &a);
  EXPECT_EQ(state(), (std::vector<int>{3, 1, 1, 1}));
  for (const char* type : {"x", "x", "nope"})  // unknown pairs change nothing
    emitter.Off(type, &a);
  EXPECT_EQ(state(), (std::vector<int>{2, 1, 0, 1}));
  emitter.On("x", &b);
  emitter.Reset();
  EXPECT_EQ(state(), (std::vector<int>{1, 1, 0, 0}));

  // A destructor that calls Off, run from inside Off and inside Reset.
  int destroyed = 0;
  for (bool by_reset : {false, true}) {
    auto* d = new Destructing(&emitter, &destroyed);
    emitter.On("x", d);
    d->Release();
    EXPECT_TRUE(by_reset ? emitter.Reset() : emitter.Off("x", d));
    EXPECT_EQ(destroyed, by_reset ? 2 : 1);
  }
}

TEST_F(EventEmitterTest, DeliversToMoreListenersThanTheStackSnapshotHolds) {
  for (int i = 0; i < 40; ++i)
    emitter.On("x", &listeners.emplace_back(&order, std::to_string(i)));
  emitter.Emit(&x);
  ASSERT_EQ(order.size(), 40u);
  EXPECT_EQ(order.back(), "39");
}
