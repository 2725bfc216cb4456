#ifndef OVUI_BASE_THREAD_H_
#define OVUI_BASE_THREAD_H_

#include <pthread.h>

#include <atomic>
#include <mutex>

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
  // Ends the calling thread when still running (see above); may therefore
  // unwind, hence noexcept(false).
  virtual ~Thread() noexcept(false);

  // Runs func(arg) on a new thread. Null `func` is logged and refused.
  bool Start(Func func, void* arg);
  // Waits for a running thread and clears the object; true at once if idle.
  bool Join();
  // Ends the calling thread when running; logs and returns false when idle.
  bool Kill();
  // Clears all fields without touching any thread.
  void Reset();
  bool IsRunning() const { return running; }

 private:
  static void* Entry(void* self);
  void Clear();
  // Clear() for a caller that holds `lock`.
  void ClearFields();
  // Reaps a thread that has finished but was never joined.
  void ReapFinished();

  void* arg = nullptr;
  std::atomic<bool> running{false};
  pthread_t handle = 0;
  Func func = nullptr;

  // The worker clears the fields itself when it ends; guard them.
  mutable std::mutex lock;
  // The OS thread still to be joined, kept apart from `handle`, which the
  // worker clears, so that no thread is ever left unreaped.
  pthread_t unjoined = 0;
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
