#include "base/thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <stdexcept>
#include <thread>

#include "support/log_capture.h"

namespace {

template <typename Done>
bool Eventually(Done done) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (!done() && std::chrono::steady_clock::now() < deadline)
    std::this_thread::yield();
  return done();
}

// Counts into slot 0 or 1 of its argument: a run shows both function and argument.
template <int slot>
void* Count(void* counts) {
  ++static_cast<std::atomic<int>*>(counts)[slot];
  return nullptr;
}

// Still at work when a quick worker started after it is done.
void* Slow(void* done) {
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  *static_cast<std::atomic<bool>*>(done) = true;
  return nullptr;
}

// Started after Slow; returns, or joins or deletes the Thread running it.
struct Latest {
  bool by_worker;
  bool deletes;
  base::Thread* thread = new base::Thread;
  std::atomic<bool> older_done{false};
  bool reached_end = false;
  std::atomic<bool> left{false};  // set as the function is left, also when killed
};

void* ActOnOwnThread(void* latest) {
  auto* l = static_cast<Latest*>(latest);
  struct SetOnExit {
    std::atomic<bool>& left;
    ~SetOnExit() { left = true; }
  } on_exit{l->left};
  if (l->by_worker && l->deletes) delete l->thread;  // ends this worker, as it was running
  if (l->by_worker) l->thread->Join();
  l->reached_end = true;
  return nullptr;
}

// Both workers arrive, then wait for each other: they meet only when running at once.
void* Meet(void* meeting) {
  auto* m = static_cast<std::atomic<int>*>(meeting);
  ++m[0];
  if (Eventually([m] { return m[0] == 2; })) ++m[1];
  return nullptr;
}

void* KillOwnThread(void* thread) {
  static_cast<base::Thread*>(thread)->Kill();
  ADD_FAILURE() << "Kill returned";
  return nullptr;
}

void* Throw(void*) {
  throw std::runtime_error("boom");
}

}  // namespace

TEST(ThreadTest, KillEndsItsWorkerAndAThrowIsLogged) {
  ovui_test::LogCapture log;
  base::Thread t;
  ASSERT_TRUE(t.Start(&KillOwnThread, &t));
  EXPECT_TRUE(t.Join());
  ASSERT_TRUE(t.Start(&Throw, nullptr));
  EXPECT_TRUE(t.Join());
  EXPECT_FALSE(t.IsRunning());
  EXPECT_NE(log.Text().find("[2] Thread Exception.\n"), std::string::npos) << log.Text();
  EXPECT_FALSE(t.Kill());  // idle
  EXPECT_TRUE(log.HasFailedCheck("Kill", "this->running"));
}

TEST(ThreadTest, RestartsAndOtherThreadsRunAtOnceEachWithItsOwnStart) {
  std::atomic<int> counts[8][2] = {};
  std::atomic<int> meeting[2] = {};  // arrived, met
  base::Thread t;
  base::Thread other;
  ASSERT_TRUE(other.Start(&Meet, meeting));
  for (int i = 0; i < 8; ++i)
    ASSERT_TRUE(t.Start(i % 2 ? &Count<1> : &Count<0>, counts[i]));
  ASSERT_TRUE(t.Start(&Meet, meeting));
  EXPECT_TRUE(t.Join());
  EXPECT_TRUE(other.Join());
  EXPECT_EQ(meeting[1], 2);
  for (int i = 0; i < 8; ++i)
    EXPECT_EQ(counts[i][i % 2] * 10 + counts[i][1 - i % 2], 10) << i;
}

TEST(ThreadTest, JoinAndDeleteWaitForEveryWorker) {
  // Also once idle, and from the latest worker, which its delete ends unjoined.
  for (const bool by_worker : {false, true}) {
    for (const bool deletes : {false, true}) {
      Latest latest{by_worker, deletes};
      base::Thread* t = latest.thread;
      ASSERT_TRUE(t->Start(&Slow, &latest.older_done));
      ASSERT_TRUE(t->Start(&ActOnOwnThread, &latest));
      ASSERT_TRUE(Eventually([&] { return latest.left.load(); }));
      if (!by_worker) {  // idle, yet the older worker is still at work
        ASSERT_TRUE(Eventually([t] { return !t->IsRunning(); }));
        if (deletes)
          delete t;
        else
          EXPECT_TRUE(t->Join());
      }
      EXPECT_TRUE(latest.older_done) << by_worker << deletes;
      EXPECT_EQ(latest.reached_end, !(by_worker && deletes));
      if (!deletes) delete t;
    }
  }
}

TEST(MutexTest, IsRecursiveAndExcludesOtherThreads) {
  base::Mutex m;
  EXPECT_TRUE(m.Lock());
  EXPECT_TRUE(m.Lock());     // the same thread again
  std::atomic<int> step{0};  // 1: the other thread asks, 2: released, 3: it got the lock
  std::thread other([&] {
    step = 1;
    m.Lock();
    step = step == 2 ? 3 : -1;
    m.Unlock();
  });
  ASSERT_TRUE(Eventually([&] { return step != 0; }));
  EXPECT_TRUE(m.Unlock());  // still held once: `other` keeps waiting
  step = 2;
  EXPECT_TRUE(m.Unlock());
  other.join();
  EXPECT_EQ(step, 3);
}
