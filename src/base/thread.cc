#include "base/thread.h"

#include <cxxabi.h>

#include <algorithm>
#include <memory>

#include "base/log.h"

namespace base {

thread_local Thread::Run* Thread::current = nullptr;

Thread::~Thread() noexcept(false) {
  // Decided before waiting, which lets the latest worker clear `running`.
  const bool was_running = this->running;
  if (current && current->owner == this) {
    // Nobody can join a worker that destroys its own Thread: let it go, and
    // keep its entry off the freed object.
    current->owner = nullptr;
    const pthread_t self = pthread_self();
    {
      std::lock_guard<std::mutex> guard(this->lock);
      auto it = std::find_if(this->workers.begin(), this->workers.end(),
                             [&](const Worker& w) { return pthread_equal(w.handle, self); });
      if (it != this->workers.end()) this->workers.erase(it);
    }
    pthread_detach(self);
  }
  // The object must not be freed under any worker still inside Entry.
  Reap(true);
  // As Kill(), whose check of `running` may no longer pass after the wait.
  if (was_running) pthread_exit(nullptr);
}

bool Thread::Start(Func func, void* arg) {
  OVUI_CHECK(func != NULL, false);
  Reap(false);  // so that restarts do not pile up finished threads
  // Each worker gets its own copy: a restart overwrites the fields before the
  // earlier worker may have read them.
  auto* run = new Run{this, func, arg};
  // Held until every field is written, so a worker that ends at once cannot
  // clear them before they are set.
  std::lock_guard<std::mutex> guard(this->lock);
  this->func = func;
  this->arg = arg;
  this->running = true;
  pthread_t h;
  if (pthread_create(&h, nullptr, &Thread::Entry, run) != 0) {
    delete run;
    this->running = false;
    return false;
  }
  this->handle = h;
  this->workers.push_back({h, false, false});
  return true;
}

bool Thread::Join() {
  const bool was_running = this->running;
  Reap(true);
  if (was_running) Clear();
  return true;
}

bool Thread::Kill() {
  OVUI_CHECK(this->running, false);
  pthread_exit(nullptr);
  return true;
}

void Thread::Reset() {
  Clear();
}

void Thread::Clear() {
  std::lock_guard<std::mutex> guard(this->lock);
  ClearFields();
}

void Thread::ClearFields() {
  this->arg = nullptr;
  this->running = false;
  this->handle = 0;
  this->func = nullptr;
}

void Thread::Reap(bool all) {
  const pthread_t self = pthread_self();
  std::unique_lock<std::mutex> guard(this->lock);
  // One at a time, dropped as soon as joined: a worker being joined may itself
  // be waiting in Join for the others.
  for (;;) {
    // A worker never joins itself; it stays listed for a later Join or the
    // destructor to reap.
    auto it = std::find_if(this->workers.begin(), this->workers.end(), [&](const Worker& w) {
      return !w.claimed && !pthread_equal(w.handle, self) && (all || w.done);
    });
    if (it == this->workers.end()) break;
    it->claimed = true;
    const pthread_t h = it->handle;
    guard.unlock();
    pthread_join(h, nullptr);
    guard.lock();
    it = std::find_if(this->workers.begin(), this->workers.end(),
                      [&](const Worker& w) { return w.claimed && pthread_equal(w.handle, h); });
    if (it != this->workers.end()) this->workers.erase(it);
    this->reaped.notify_all();
  }
  if (!all) return;
  // Workers claimed by a concurrent Join are waited for too.
  this->reaped.wait(guard, [&] {
    return std::all_of(this->workers.begin(), this->workers.end(),
                       [&](const Worker& w) { return pthread_equal(w.handle, self); });
  });
}

void Thread::Finish(bool returned) {
  const pthread_t self = pthread_self();
  std::lock_guard<std::mutex> guard(this->lock);
  // A restart hands the fields to the newer worker: they are its to clear.
  if (returned && pthread_equal(this->handle, self)) ClearFields();
  for (Worker& w : this->workers) {
    if (pthread_equal(w.handle, self)) w.done = true;
  }
}

// Catching the forced unwind of pthread_exit binds a reference to an object
// that does not exist, which the null-reference sanitizer reports.
__attribute__((no_sanitize("null"))) void* Thread::Entry(void* p) {
  std::unique_ptr<Run> run(static_cast<Run*>(p));
  struct Current {
    explicit Current(Run* r) { current = r; }
    ~Current() { current = nullptr; }
  } as_current(run.get());
  Log(__FILE__, __LINE__, 0, "Thread Enter\n");
  try {
    if (run->func) run->func(run->arg);
  } catch (abi::__forced_unwind&) {
    // Kill(): the thread ends here. The fields stay set until Join.
    if (run->owner) run->owner->Finish(false);
    throw;
  } catch (...) {
    Log(__FILE__, __LINE__, 2, "Thread Exception.\n");
  }
  Log(__FILE__, __LINE__, 0, "Thread Exit\n");
  if (run->owner) run->owner->Finish(true);
  return nullptr;
}

Mutex::Mutex() {
  pthread_mutexattr_t attr;
  pthread_mutexattr_init(&attr);
  pthread_mutexattr_settype(&attr, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(&this->handle, &attr);
  pthread_mutexattr_destroy(&attr);
}

Mutex::~Mutex() {
  pthread_mutex_destroy(&this->handle);
}

bool Mutex::Lock() {
  pthread_mutex_lock(&this->handle);
  return true;
}

bool Mutex::Unlock() {
  pthread_mutex_unlock(&this->handle);
  return true;
}

}  // namespace base
