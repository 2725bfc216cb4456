#include "support/modal.h"

#include <QApplication>
#include <QTimer>
#include <memory>

namespace ovui_test {

void OnNextModal(std::function<void(QWidget*)> act) {
  // Polls until the dialog is up: static dialog functions build it first.
  auto poll = std::make_shared<std::function<void()>>();
  *poll = [poll, act]() {
    if (QWidget* w = QApplication::activeModalWidget()) {
      act(w);
      *poll = nullptr;  // break the self-reference
    } else {
      QTimer::singleShot(5, *poll);
    }
  };
  QTimer::singleShot(0, *poll);
}

}  // namespace ovui_test
