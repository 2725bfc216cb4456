#include "base/thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <regex>
#include <stdexcept>
#include <thread>

#include "support/log_capture.h"

namespace {

using std::chrono::seconds;

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

// Each side announces itself and waits for the other, so both functions have
// to be running at the same time.
struct Meeting {
  std::promise<void> here;
  std::shared_future<void> other;
  bool met = false;
};

void* Meet(void* meeting) {
  auto* m = static_cast<Meeting*>(meeting);
  m->here.set_value();
  m->met = m->other.wait_for(seconds(5)) == std::future_status::ready;
  return nullptr;
}

}  // namespace

TEST(ThreadTest, RunsKillsAndLogs) {
  ovui_test::LogCapture log;
  g_steps = 0;
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

TEST(ThreadTest, WorkersOfTwoThreadsRunTogether) {
  Meeting a;
  Meeting b;
  a.other = b.here.get_future().share();
  b.other = a.here.get_future().share();
  base::Thread ta;
  base::Thread tb;
  ASSERT_TRUE(ta.Start(&Meet, &a));
  ASSERT_TRUE(tb.Start(&Meet, &b));
  EXPECT_TRUE(ta.Join());
  EXPECT_TRUE(tb.Join());
  EXPECT_TRUE(a.met);
  EXPECT_TRUE(b.met);
}

TEST(MutexTest, IsRecursiveAndExcludesOtherThreads) {
  base::Mutex m;
  EXPECT_TRUE(m.Lock());
  EXPECT_TRUE(m.Lock());  // the same thread again
  std::promise<void> asking;
  std::atomic<bool> released{false};
  bool got_it_after_release = false;
  std::thread other([&] {
    asking.set_value();
    m.Lock();
    got_it_after_release = released;
    m.Unlock();
  });
  asking.get_future().wait();
  EXPECT_TRUE(m.Unlock());  // still held once: `other` keeps waiting
  released = true;
  EXPECT_TRUE(m.Unlock());
  other.join();
  EXPECT_TRUE(got_it_after_release);
}
