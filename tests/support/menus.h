#ifndef OVUI_TESTS_SUPPORT_MENUS_H_
#define OVUI_TESTS_SUPPORT_MENUS_H_

#include <QMenu>
#include <functional>
#include <string>
#include <vector>

namespace ovui_test {

// The menu as text, one line per entry: submenus end in " >" with their
// entries indented below, separators are "-", disabled entries are in [].
std::vector<std::string> Describe(const QMenu& menu, const std::string& indent = "");

// Right-clicks `widget` at `at` the way the window system does and hands the
// first menu that opens to `inspect`, inside the menu's own event loop. Every
// menu still open afterwards is closed. Returns how many menus opened.
int RightClick(QWidget& widget, const std::function<void(QMenu&)>& inspect = {},
               QPoint at = QPoint(3, 4));

}  // namespace ovui_test

#endif  // OVUI_TESTS_SUPPORT_MENUS_H_
