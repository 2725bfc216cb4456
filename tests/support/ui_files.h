#ifndef OVUI_TESTS_SUPPORT_UI_FILES_H_
#define OVUI_TESTS_SUPPORT_UI_FILES_H_

#include <QDir>
#include <QFile>
#include <QUiLoader>
#include <QWidget>
#include <memory>

namespace ovui_test {

// Loads `file` from the Qt tests' data directory (OVUI_TEST_DATA); null when
// it cannot. Designer places the library's widgets as promoted Qt widgets,
// which a plain QUiLoader cannot make: a `W` is made for `class_name`.
template <typename W>
std::unique_ptr<QWidget> LoadUi(const char* file, const char* class_name) {
  struct Loader : QUiLoader {
    QString promoted;
    QWidget* createWidget(const QString& cls, QWidget* parent, const QString& name) override {
      if (cls != promoted) return QUiLoader::createWidget(cls, parent, name);
      auto* widget = new W(parent);
      widget->setObjectName(name);
      return widget;
    }
  } loader;
  loader.promoted = class_name;
  QFile ui(QDir(OVUI_TEST_DATA).filePath(file));
  if (!ui.open(QFile::ReadOnly)) return nullptr;
  return std::unique_ptr<QWidget>(loader.load(&ui));
}

}  // namespace ovui_test

#endif  // OVUI_TESTS_SUPPORT_UI_FILES_H_
