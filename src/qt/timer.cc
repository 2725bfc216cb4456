#include "qt/timer.h"

#include <QPointer>

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
  if (!this->handler) return;
  // The handler may delete this timer: hand it a name of its own and look
  // at nothing of ours afterwards unless we still exist.
  const QPointer<Timer> alive(this);
  const std::string name = this->name;
  if (!this->handler->OnTimer(name) && alive) this->timer.stop();
}

}  // namespace vm
