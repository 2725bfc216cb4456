#include "base/thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <regex>
#include <stdexcept>
#include <thread>

#include "support/log_capture.h"

namespace {

using std::chrono::milliseconds;
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

// Which function ran with a given argument, and how often.
struct Tally {
  std::atomic<int> a{0};
  std::atomic<int> b{0};
};

void* CountA(void* tally) {
  ++static_cast<Tally*>(tally)->a;
  return nullptr;
}

void* CountB(void* tally) {
  ++static_cast<Tally*>(tally)->b;
  return nullptr;
}

// Outlives a quick worker started after it, so that a Join that waits for the
// latest worker alone returns before this one is done.
void* Slow(void* done) {
  std::this_thread::sleep_for(milliseconds(20));
  *static_cast<std::atomic<bool>*>(done) = true;
  return nullptr;
}

// The latest worker clears `running` as its function returns.
bool BecomesIdle(const base::Thread& t) {
  const auto deadline = std::chrono::steady_clock::now() + seconds(5);
  while (t.IsRunning() && std::chrono::steady_clock::now() < deadline)
    std::this_thread::yield();
  return !t.IsRunning();
}

// A worker that joins or deletes the Thread that runs it.
struct Own {
  base::Thread* thread = nullptr;
  std::atomic<bool>* older_done = nullptr;
  bool older_done_then = false;
  bool reached_end = false;
  // Set as the worker's function is left, also when it is killed.
  std::shared_ptr<std::promise<void>> left = std::make_shared<std::promise<void>>();
};

struct SetOnExit {
  std::shared_ptr<std::promise<void>> left;
  ~SetOnExit() { left->set_value(); }
};

void* JoinsOwnThread(void* own) {
  auto* o = static_cast<Own*>(own);
  o->older_done_then = o->thread->Join() && *o->older_done;
  o->reached_end = true;
  return nullptr;
}

void* DeletesOwnThread(void* own) {
  auto* o = static_cast<Own*>(own);
  SetOnExit on_exit{o->left};
  delete o->thread;
  o->reached_end = true;  // never: the Thread was running
  return nullptr;
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

TEST(ThreadTest, RestartedWhileRunningEachWorkerRunsItsOwnStart) {
  Tally tallies[8];
  base::Thread t;
  for (int i = 0; i < 8; ++i)
    ASSERT_TRUE(t.Start(i % 2 ? &CountB : &CountA, &tallies[i]));
  EXPECT_TRUE(t.Join());
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(tallies[i].a, i % 2 ? 0 : 1) << i;
    EXPECT_EQ(tallies[i].b, i % 2 ? 1 : 0) << i;
  }
}

TEST(ThreadTest, JoinAndDeleteWaitForEveryWorker) {
  auto* t = new base::Thread;
  Tally quick;
  std::atomic<bool> done[3] = {{false}, {false}, {false}};
  ASSERT_TRUE(t->Start(&Slow, &done[0]));
  ASSERT_TRUE(t->Start(&CountA, &quick));
  EXPECT_TRUE(t->Join());
  EXPECT_TRUE(done[0]);
  EXPECT_EQ(quick.a, 1);

  // Idle once the latest worker is done, yet an older one is still at work.
  ASSERT_TRUE(t->Start(&Slow, &done[1]));
  ASSERT_TRUE(t->Start(&CountA, &quick));
  ASSERT_TRUE(BecomesIdle(*t));
  EXPECT_TRUE(t->Join());
  EXPECT_TRUE(done[1]);

  ASSERT_TRUE(t->Start(&Slow, &done[2]));
  ASSERT_TRUE(t->Start(&CountA, &quick));
  ASSERT_TRUE(BecomesIdle(*t));
  delete t;
  EXPECT_TRUE(done[2]);
  EXPECT_EQ(quick.a, 3);
}

TEST(ThreadTest, WorkerJoinsOrDeletesItsOwnThread) {
  std::atomic<bool> older_done{false};
  base::Thread t;
  Own joins;
  joins.thread = &t;
  joins.older_done = &older_done;
  ASSERT_TRUE(t.Start(&Slow, &older_done));
  ASSERT_TRUE(t.Start(&JoinsOwnThread, &joins));
  EXPECT_TRUE(t.Join());  // idle by now or not, the worker is waited for
  EXPECT_TRUE(joins.older_done_then);
  EXPECT_TRUE(joins.reached_end);
  EXPECT_FALSE(t.IsRunning());

  // Deleting a running Thread ends the deleting thread, here its own worker,
  // which nobody is left to join; the older worker is waited for first.
  older_done = false;
  Own deletes;
  deletes.thread = new base::Thread;
  deletes.older_done = &older_done;
  ASSERT_TRUE(deletes.thread->Start(&Slow, &older_done));
  ASSERT_TRUE(deletes.thread->Start(&DeletesOwnThread, &deletes));
  ASSERT_EQ(deletes.left->get_future().wait_for(seconds(5)), std::future_status::ready);
  EXPECT_TRUE(older_done);
  EXPECT_FALSE(deletes.reached_end);
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
