#include "support/menus.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QPointer>
#include <QTimer>

namespace ovui_test {

std::vector<std::string> Describe(const QMenu& menu, const std::string& indent) {
  std::vector<std::string> lines;
  for (QAction* action : menu.actions()) {
    std::string text = action->text().toUtf8().toStdString();
    if (action->isSeparator()) {
      lines.push_back(indent + "-");
    } else if (action->menu()) {
      lines.push_back(indent + text + " >");
      for (const std::string& line : Describe(*action->menu(), indent + "  "))
        lines.push_back(line);
    } else {
      lines.push_back(indent + (action->isEnabled() ? text : "[" + text + "]"));
    }
  }
  return lines;
}

int RightClick(QWidget& widget, const std::function<void(QMenu&)>& inspect, QPoint at) {
  int opened = 0;
  QTimer poll;
  QObject::connect(&poll, &QTimer::timeout, [&] {
    QPointer<QMenu> menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu) return;
    if (opened++ == 0 && inspect) inspect(*menu);
    if (menu) menu->close();
  });
  poll.start(0);
  QContextMenuEvent event(QContextMenuEvent::Mouse, at, widget.mapToGlobal(at));
  QApplication::sendEvent(&widget, &event);
  return opened;
}

}  // namespace ovui_test
