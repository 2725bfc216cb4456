#include "qt/timer.h"

namespace vm {

Timer::Timer(const std::string& name, int interval_ms, TimerHandler* handler, QObject* parent)
    : QObject(parent), name(name), handler(handler) {
  this->timer.setInterval(interval_ms);
  connect(&this->timer, SIGNAL(timeout()), this, SLOT(OnTimer()));
}

Timer::~Timer() {
  // No tick may reach the handler while the timer is being destroyed.
  this->handler = nullptr;
}

void Timer::Start() {
  this->timer.start();
}

void Timer::Stop() {
  this->timer.stop();
}

void Timer::OnTimer() {
  if (this->handler && !this->handler->OnTimer(this->name)) this->timer.stop();
}

}  // namespace vm
