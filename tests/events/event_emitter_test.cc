#include "events/event_emitter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/recording_listener.h"
#include "support/toy_objects.h"

using events::Event;
using events::EventEmitter;
using ovui_test::RecordingListener;

namespace {

// Listeners are created with count 1 and released by the test itself.
struct EventEmitterTest : testing::Test {
  EventEmitter emitter;
  std::vector<std::string> order;
  RecordingListener* a = new RecordingListener(&order, "a");
  RecordingListener* b = new RecordingListener(&order, "b");
  ~EventEmitterTest() override {
    emitter.Reset();
    a->Release();
    b->Release();
  }
};

bool CountCalls(void* ctx, Event*) {
  ++*static_cast<int*>(ctx);
  return false;
}

// Unregisters itself when destroyed, as library listeners do.
struct Destructing : ovui_test::Tracked<events::EventListener> {
  Destructing(EventEmitter* emitter, int* destroyed) : Tracked(destroyed), emitter(emitter) {}
  ~Destructing() override { emitter->Off("x", this); }
  bool OnEvent(Event*) override { return false; }
  EventEmitter* emitter;
};

}  // namespace

// Integer and pointer parameters show in the array tests' event texts.
TEST(EventTest, ParametersAndText) {
  Event e("x");
  EXPECT_EQ(e.ToString(), "x:");
  e.SetParam("ratio", 0.5);
  e.SetParam("name", "age");
  EXPECT_EQ(e.ToString(), "x:name=age ratio=0.500000 ");  // in name order
  EXPECT_EQ(e.GetParam("missing").Type(), base::Value::TYPE_NULL);
  EXPECT_STREQ(Event::CHANGED, "changed");
}

TEST_F(EventEmitterTest, DeliversInOrderUntilAListenerStops) {
  Event e("x");
  EXPECT_TRUE(emitter.Emit(&e));  // no listeners at all
  emitter.On("x", a);
  emitter.On("x", b);
  emitter.On("y", b);
  EXPECT_TRUE(emitter.Emit(&e));
  a->stop = true;
  EXPECT_TRUE(emitter.Emit(&e));
  EXPECT_EQ(order, (std::vector<std::string>{"a", "b", "a"}));
}

TEST_F(EventEmitterTest, ReferenceCountsThroughOnOffReset) {
  EXPECT_TRUE(emitter.On("x", a));
  EXPECT_TRUE(emitter.On("x", a));  // repeat: no second reference
  EXPECT_EQ(a->RefCount(), 2);
  emitter.On("y", a);
  EXPECT_TRUE(emitter.Off("x", a));
  EXPECT_FALSE(emitter.Exist("x", a));
  EXPECT_TRUE(emitter.Exist("y", a));
  EXPECT_TRUE(emitter.Off("x", a));  // not registered: nothing changes
  EXPECT_TRUE(emitter.Off("nope", b));
  EXPECT_EQ(a->RefCount(), 2);
  EXPECT_EQ(b->RefCount(), 1);

  emitter.On("x", b);
  EXPECT_TRUE(emitter.Reset());
  EXPECT_EQ(a->RefCount(), 1);
  EXPECT_EQ(b->RefCount(), 1);
  EXPECT_FALSE(emitter.Exist("y", a));
}

TEST_F(EventEmitterTest, EmitWalksASnapshot) {
  RecordingListener* late = new RecordingListener(&order, "late");
  emitter.On("x", a);
  emitter.On("x", b);
  a->hook = [&](Event*) {
    emitter.On("x", late);  // added during Emit: not called this time
    emitter.Off("x", b);    // removed during Emit: still called this time
  };
  Event e("x");
  emitter.Emit(&e);
  a->hook = nullptr;
  emitter.Emit(&e);
  EXPECT_EQ(order, (std::vector<std::string>{"a", "b", "a", "late"}));
  emitter.Off("x", late);
  late->Release();
}

TEST_F(EventEmitterTest, FunctionListeners) {
  int calls = 0;
  auto* fn = new events::FunctionListener(&CountCalls, &calls);
  auto* none = new events::FunctionListener();
  emitter.On("x", none);
  emitter.On("x", fn);
  emitter.On("x", a);
  Event e("x");
  emitter.Emit(&e);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(order, (std::vector<std::string>{"a"}));  // the empty one handled nothing
  emitter.Reset();
  fn->Release();
  none->Release();
}

TEST_F(EventEmitterTest, ManyListenersAndSelfUnregisteringDestructors) {
  for (int i = 0; i < 40; ++i) {  // past the snapshot kept on the stack
    auto* l = new RecordingListener(&order, std::to_string(i));
    emitter.On("x", l);
    l->Release();  // the emitter holds the only reference now
  }
  Event e("x");
  emitter.Emit(&e);
  ASSERT_EQ(order.size(), 40u);
  EXPECT_EQ(order.back(), "39");

  int destroyed = 0;
  auto* d = new Destructing(&emitter, &destroyed);
  emitter.On("x", d);
  d->Release();
  emitter.Off("x", d);
  EXPECT_EQ(destroyed, 1);
  d = new Destructing(&emitter, &destroyed);
  emitter.On("x", d);
  d->Release();
  emitter.Reset();
  EXPECT_EQ(destroyed, 2);
}
