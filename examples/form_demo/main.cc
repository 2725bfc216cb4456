// The order form and the catalogue: a Designer file whose widgets carry
// binding rules, bound to view models that know nothing of the widgets.
//
//   ovui_form_demo                    shows the window
//   ovui_form_demo --screenshot FILE  renders it offscreen and exits: the
//                                     order tab into FILE, the others into
//                                     FILE with "_catalogue", "_settings" and
//                                     "_settings_dialog" (a menu dialog open)
//                                     before the extension (form.png,
//                                     form_catalogue.png, ...)
//
// Without a display the window is rendered offscreen into default files.
#include <QApplication>
#include <QEventLoop>
#include <QFileInfo>
#include <QPainter>
#include <QPixmap>
#include <QTabWidget>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "form_loader.h"
#include "order_form.h"
#include "ovui_qt.h"
#include "settings.h"

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

// ("dir/form.png", "_catalogue") -> "dir/form_catalogue.png".
QString TabPath(const QString& path, const char* tab) {
  const QFileInfo info(path);
  const QString suffix = info.suffix();
  const QString base = suffix.isEmpty() ? path : path.left(path.size() - suffix.size() - 1);
  return base + tab + (suffix.isEmpty() ? QString() : "." + suffix);
}

// Lets the first paint and the deferred view update happen, then saves the
// window with its open pop-up, if any, drawn where it is.
bool SaveScreenshot(QWidget* window, const QString& path) {
  QEventLoop loop;
  QTimer::singleShot(200, &loop, &QEventLoop::quit);
  loop.exec();
  QPixmap picture = window->grab();
  if (QWidget* popup = QApplication::activePopupWidget()) {
    QPainter painter(&picture);
    painter.drawPixmap(window->mapFromGlobal(popup->mapToGlobal(QPoint(0, 0))), popup->grab());
  }
  if (!picture.save(path, "PNG")) {
    std::fprintf(stderr, "cannot write %s\n", path.toLocal8Bit().constData());
    return false;
  }
  std::printf("%s\n", path.toLocal8Bit().constData());
  return true;
}

// One picture per tab, and the settings once more with the stock sort's
// choices open: selecting a dialog item from the view model opens it.
bool SaveScreenshots(QWidget* window, Settings* settings, const QString& path) {
  auto* tabs = window->findChild<QTabWidget*>("tabs");
  if (!tabs) return SaveScreenshot(window, path);
  const char* const names[] = {"", "_catalogue", "_settings"};
  for (int i = 0; i < 3; ++i) {
    tabs->setCurrentIndex(i);
    if (!SaveScreenshot(window, TabPath(path, names[i]))) return false;
  }
  settings->SetPropW("mcix_selected", base::Value(2));
  return SaveScreenshot(window, TabPath(path, "_settings_dialog"));
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
  } else if (!SaveScreenshots(window.get(), order->GetSettings(), screenshot)) {
    status = 1;
  }

  window.reset();  // takes its binding context along
  order->Release();
  return status;
}
