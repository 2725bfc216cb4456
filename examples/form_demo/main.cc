// The order form: a Designer file whose widgets carry binding rules, bound to
// a view model that knows nothing of Qt.
//
//   ovui_form_demo                    shows the form
//   ovui_form_demo --screenshot FILE  renders it offscreen into FILE and exits
//
// Without a display the form is rendered offscreen into a default file.
#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QPixmap>
#include <QTimer>
#include <QUiLoader>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "order_form.h"
#include "ovui_qt.h"

namespace {

bool HasDisplay() {
  const char* x11 = std::getenv("DISPLAY");
  const char* wayland = std::getenv("WAYLAND_DISPLAY");
  return (x11 && *x11) || (wayland && *wayland);
}

bool IsOffscreen() {
  const char* platform = std::getenv("QT_QPA_PLATFORM");
  return platform && std::strcmp(platform, "offscreen") == 0;
}

std::unique_ptr<QWidget> LoadForm() {
  QFile file(":/form_demo/form_demo.ui");
  if (!file.open(QFile::ReadOnly)) return nullptr;
  QUiLoader loader;
  return std::unique_ptr<QWidget>(loader.load(&file));
}

// Lets the first paint and the deferred view update happen, then saves.
bool SaveScreenshot(QWidget* window, const QString& path) {
  QEventLoop loop;
  QTimer::singleShot(200, &loop, &QEventLoop::quit);
  loop.exec();
  return window->grab().save(path, "PNG");
}

}  // namespace

int main(int argc, char** argv) {
  QString screenshot;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--screenshot") == 0 && i + 1 < argc) {
      screenshot = QString::fromLocal8Bit(argv[++i]);
    } else {
      std::fprintf(stderr, "usage: %s [--screenshot FILE]\n", argv[0]);
      return 2;
    }
  }
  if (!HasDisplay() && !IsOffscreen()) {
    std::printf("No display ($DISPLAY and $WAYLAND_DISPLAY are unset): rendering offscreen.\n");
    std::fflush(stdout);  // before Qt's own messages on stderr
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
  }
  if (IsOffscreen() && screenshot.isEmpty()) screenshot = QStringLiteral(OVUI_FORM_DEMO_PNG);

  QApplication app(argc, argv);
  std::unique_ptr<QWidget> window = LoadForm();
  if (!window) {
    std::fprintf(stderr, "cannot load the form\n");
    return 1;
  }

  auto* order = new OrderForm();
  vm::BindingContext::CreateAndBind(window.get(), order);
  window->show();

  int status = 0;
  if (screenshot.isEmpty()) {
    status = app.exec();
  } else if (SaveScreenshot(window.get(), screenshot)) {
    std::printf("%s\n", screenshot.toLocal8Bit().constData());
  } else {
    std::fprintf(stderr, "cannot write %s\n", screenshot.toLocal8Bit().constData());
    status = 1;
  }

  window.reset();  // takes its binding context along
  order->Release();
  return status;
}
