#include "base/thread.h"

#include <cxxabi.h>

#include "base/log.h"

namespace base {

Thread::~Thread() noexcept(false) {
  if (this->running) {
    // Nobody can join a worker that destroys its own Thread: let it go.
    if (pthread_equal(pthread_self(), this->handle)) pthread_detach(pthread_self());
    Kill();
  }
  ReapFinished();
}

bool Thread::Start(Func func, void* arg) {
  OVUI_CHECK(func != NULL, false);
  if (this->running) {
    // A second Start is not refused; the first worker still gets reaped.
    std::lock_guard<std::mutex> guard(this->lock);
    if (this->unjoined) pthread_detach(this->unjoined);
    this->unjoined = 0;
  } else {
    ReapFinished();
  }
  // Held until every field is written, so a worker that ends at once cannot
  // clear them before they are set.
  std::lock_guard<std::mutex> guard(this->lock);
  this->func = func;
  this->arg = arg;
  this->running = true;
  pthread_t h;
  if (pthread_create(&h, nullptr, &Thread::Entry, this) != 0) {
    this->running = false;
    return false;
  }
  this->handle = h;
  this->unjoined = h;
  return true;
}

bool Thread::Join() {
  if (!this->running) {
    ReapFinished();
    return true;
  }
  ReapFinished();  // waits for the worker: it is still running
  Clear();
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

void Thread::ReapFinished() {
  pthread_t h;
  {
    std::lock_guard<std::mutex> guard(this->lock);
    h = this->unjoined;
    this->unjoined = 0;
  }
  if (h && !pthread_equal(h, pthread_self())) pthread_join(h, nullptr);
}

// Catching the forced unwind of pthread_exit binds a reference to an object
// that does not exist, which the null-reference sanitizer reports.
__attribute__((no_sanitize("null"))) void* Thread::Entry(void* self) {
  auto* t = static_cast<Thread*>(self);
  Log(__FILE__, __LINE__, 0, "Thread Enter\n");
  Func func;
  void* arg;
  {
    std::lock_guard<std::mutex> guard(t->lock);
    func = t->func;
    arg = t->arg;
  }
  try {
    if (func) func(arg);
  } catch (abi::__forced_unwind&) {
    throw;  // Kill(): the thread is ending, and `t` may be gone
  } catch (...) {
    Log(__FILE__, __LINE__, 2, "Thread Exception.\n");
  }
  Log(__FILE__, __LINE__, 0, "Thread Exit\n");
  // A second Start may have handed the object to a newer worker: its fields
  // are that worker's to clear.
  std::lock_guard<std::mutex> guard(t->lock);
  if (pthread_equal(t->handle, pthread_self())) t->ClearFields();
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
