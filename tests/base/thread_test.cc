#include "base/thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <regex>
#include <stdexcept>
#include <thread>

#include "support/log_capture.h"

namespace {

std::atomic<int> g_steps{0};

// Takes two steps, unless passed its own Thread, which it kills in between.
void* TwoSteps(void* thread) {
  ++g_steps;
  if (thread) static_cast<base::Thread*>(thread)->Kill();
  ++g_steps;
  return nullptr;
}

void* Throwing(void*) {
  throw std::runtime_error("boom");
}

}  // namespace

TEST(ThreadTest, RunsKillsAndLogs) {
  ovui_test::LogCapture log;
  base::Thread t;
  ASSERT_TRUE(t.Start(&TwoSteps, nullptr));
  EXPECT_TRUE(t.Join());
  EXPECT_EQ(g_steps, 2);
  ASSERT_TRUE(t.Start(&TwoSteps, &t));  // reusable; Kill ends the thread it runs on
  EXPECT_TRUE(t.Join());
  EXPECT_EQ(g_steps, 3);
  EXPECT_FALSE(t.IsRunning());
  EXPECT_TRUE(t.Join());  // idle: at once

  log.Clear();
  ASSERT_TRUE(t.Start(&Throwing, nullptr));
  EXPECT_TRUE(t.Join());
  const std::regex logged(R"(\[2\] Thread Exception\.\n.*\[0\] Thread Exit\n)");
  EXPECT_TRUE(std::regex_search(log.Text(), logged)) << log.Text();
}

TEST(MutexTest, IsRecursiveAndExcludesOtherThreads) {
  base::Mutex m;
  EXPECT_TRUE(m.Lock());
  EXPECT_TRUE(m.Lock());  // the same thread again
  std::atomic<bool> other_done{false};
  std::thread other([&] { other_done = m.Lock() && m.Unlock(); });
  EXPECT_TRUE(m.Unlock());
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_FALSE(other_done);  // still held once
  EXPECT_TRUE(m.Unlock());
  other.join();
  EXPECT_TRUE(other_done);
}
