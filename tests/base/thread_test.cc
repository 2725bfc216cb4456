#include "base/thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "support/log_capture.h"

namespace {

void* Throwing(void*) {
  throw std::runtime_error("boom");
}

void* Count(void* arg) {
  ++*static_cast<std::atomic<int>*>(arg);
  return nullptr;
}

struct KillContext {
  base::Thread* thread;
  std::atomic<bool> after_kill{false};
};

void* KillSelf(void* arg) {
  auto* ctx = static_cast<KillContext*>(arg);
  ctx->thread->Kill();
  ctx->after_kill = true;  // never reached
  return nullptr;
}

}  // namespace

TEST(ThreadTest, RunsTheFunctionAndJoins) {
  ovui_test::LogCapture log;
  std::atomic<int> counter{0};
  base::Thread t;
  EXPECT_FALSE(t.Start(nullptr, nullptr));
  EXPECT_TRUE(log.HasFailedCheck("Start", "func != NULL"));
  ASSERT_TRUE(t.Start(&Count, &counter));
  EXPECT_TRUE(t.Join());
  EXPECT_EQ(counter, 1);
  EXPECT_FALSE(t.IsRunning());
  EXPECT_TRUE(t.Join());  // idle: at once
  EXPECT_NE(log.Text().find("[0] Thread Enter\n"), std::string::npos);

  ASSERT_TRUE(t.Start(&Count, &counter));  // reusable
  EXPECT_TRUE(t.Join());
  EXPECT_EQ(counter, 2);
}

TEST(ThreadTest, AThrowingFunctionIsLoggedAndStillExits) {
  ovui_test::LogCapture log;
  base::Thread t;
  ASSERT_TRUE(t.Start(&Throwing, nullptr));
  t.Join();
  EXPECT_FALSE(t.IsRunning());
  const std::string text = log.Text();
  const size_t exception = text.find("[2] Thread Exception.\n");
  ASSERT_NE(exception, std::string::npos);
  EXPECT_NE(text.find("[0] Thread Exit\n", exception), std::string::npos);
}

TEST(ThreadTest, KillEndsOnlyTheCallingThread) {
  ovui_test::LogCapture log;
  base::Thread idle;
  EXPECT_FALSE(idle.Kill());
  EXPECT_TRUE(log.HasFailedCheck("Kill", "this->running"));

  base::Thread t;
  KillContext ctx{&t};
  ASSERT_TRUE(t.Start(&KillSelf, &ctx));
  EXPECT_TRUE(t.Join());
  EXPECT_FALSE(ctx.after_kill);
  EXPECT_FALSE(t.IsRunning());
}

TEST(MutexTest, IsRecursiveAndExcludesOtherThreads) {
  base::Mutex m;
  EXPECT_TRUE(m.Lock());
  EXPECT_TRUE(m.Lock());  // same thread again
  std::atomic<bool> other_got_it{false};
  std::thread other([&] {
    m.Lock();
    other_got_it = true;
    m.Unlock();
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_FALSE(other_got_it);
  EXPECT_TRUE(m.Unlock());
  EXPECT_FALSE(other_got_it);  // still held once
  EXPECT_TRUE(m.Unlock());
  other.join();
  EXPECT_TRUE(other_got_it);
}
