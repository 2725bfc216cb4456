#ifndef OVUI_QT_TIMER_H_
#define OVUI_QT_TIMER_H_

#include <QObject>
#include <QTimer>
#include <string>

namespace vm {

// Receives the ticks of a vm::Timer.
class TimerHandler {
 public:
  virtual ~TimerHandler() = default;
  // True keeps the timer running, false stops it.
  virtual bool OnTimer(const std::string& name) = 0;
};

// A named, repeating timer on the Qt event loop of its thread that calls its
// handler on every tick until the handler answers false. The handler is not
// owned: it must outlive the timer or be detached with SetHandler(nullptr).
// The handler may delete the timer from OnTimer.
class Timer : public QObject {
  Q_OBJECT

 public:
  Timer(const std::string& name, int interval_ms, TimerHandler* handler, QObject* parent = nullptr);
  ~Timer() override;

  void Start();
  void Stop();
  bool IsActive() const { return this->timer.isActive(); }
  const std::string& GetName() const { return this->name; }
  void SetHandler(TimerHandler* handler) { this->handler = handler; }

 public slots:
  void OnTimer();

 private:
  std::string name;
  QTimer timer;
  TimerHandler* handler;
};

}  // namespace vm

#endif  // OVUI_QT_TIMER_H_
