#ifndef OVUI_BASE_THREAD_H_
#define OVUI_BASE_THREAD_H_

#include <pthread.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace base {

// One worker thread running a plain function, for host code that works off
// the user-interface thread. The binding layer never uses it.
//
// There is deliberately no way to stop another thread: Kill() ends the
// calling thread, so it is meant to be called from inside the thread
// function, and destroying a still-running Thread does the same to the thread
// that runs the destructor.
class Thread {
 public:
  using Func = void* (*)(void*);

  Thread() = default;
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;
  // Waits for every worker but the calling one, then ends the calling thread
  // when the object was running (see above); may therefore unwind, hence
  // noexcept(false).
  virtual ~Thread() noexcept(false);

  // Runs func(arg) on a new thread. Null `func` is logged and refused. A
  // restart while running is allowed: each worker runs its own func(arg), and
  // the object's fields follow the latest one.
  bool Start(Func func, void* arg);
  // Waits for every worker this object started, except the calling one, and
  // clears the object if it was running. Always true.
  bool Join();
  // Ends the calling thread when running; logs and returns false when idle.
  bool Kill();
  // Clears all fields without touching any thread.
  void Reset();
  bool IsRunning() const { return running; }

 private:
  // What one Start hands to its own worker, which owns it.
  struct Run {
    Thread* owner;  // null once the worker has destroyed the Thread itself
    Func func;
    void* arg;
  };
  // A started OS thread, kept until it is joined or lets itself go.
  struct Worker {
    pthread_t handle;
    bool done;     // has left the thread function
    bool claimed;  // being joined by some thread
  };

  static void* Entry(void* run);
  // The worker's last touch of the object; `returned` is false when killed.
  void Finish(bool returned);
  void Clear();
  // Clear() for a caller that holds `lock`.
  void ClearFields();
  // Joins every worker but the calling one (`all`), or those already done.
  void Reap(bool all);

  void* arg = nullptr;
  std::atomic<bool> running{false};
  pthread_t handle = 0;
  Func func = nullptr;

  // The workers clear the fields and mark themselves done; guard both.
  mutable std::mutex lock;
  // Every worker still to be joined. A restart leaves earlier workers running
  // on this object, so it must outlive all of them, not only the latest.
  std::vector<Worker> workers;
  // Signalled whenever workers are joined and dropped from `workers`.
  std::condition_variable reaped;
  // The Run of the worker on the calling thread, if any.
  static thread_local Run* current;
};

// A recursive mutex: the owning thread may lock it again while holding it.
class Mutex {
 public:
  Mutex();
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;
  virtual ~Mutex();

  // Waits without time limit.
  bool Lock();
  bool Unlock();

 private:
  pthread_mutex_t handle;
};

}  // namespace base

#endif  // OVUI_BASE_THREAD_H_
