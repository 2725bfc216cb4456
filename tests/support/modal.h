#ifndef OVUI_TESTS_SUPPORT_MODAL_H_
#define OVUI_TESTS_SUPPORT_MODAL_H_

#include <gtest/gtest.h>

#include <QWidget>
#include <functional>

namespace ovui_test {

// Runs `act` on the next modal dialog as soon as it is shown, inside the
// dialog's own event loop. Call it before the code that opens the dialog.
void OnNextModal(std::function<void(QWidget*)> act);

// The same for a dialog of class `Dialog`; a dialog of another class fails
// the test and is rejected.
template <typename Dialog, typename Act>
void OnNextDialog(Act act) {
  OnNextModal([act](QWidget* w) {
    auto* dialog = qobject_cast<Dialog*>(w);
    EXPECT_NE(dialog, nullptr) << "a " << w->metaObject()->className() << " opened instead";
    if (dialog) {
      act(dialog);
    } else {
      w->close();
    }
  });
}

}  // namespace ovui_test

#endif  // OVUI_TESTS_SUPPORT_MODAL_H_
