#include "qt/translator.h"

#include <QCoreApplication>
#include <QTranslator>

namespace vm {

std::string Translator::path;
std::string Translator::name;
std::string Translator::language;

namespace {

QTranslator& TheTranslator() {
  static QTranslator translator;
  return translator;
}

}  // namespace

bool Translator::Init(const std::string& path, const std::string& name,
                      const std::string& language) {
  Translator::path = path;
  Translator::name = name;
  return SetLanguage(language);
}

bool Translator::SetLanguage(const std::string& language) {
  QTranslator& translator = TheTranslator();
  if (!Translator::language.empty()) QCoreApplication::removeTranslator(&translator);
  const std::string file = path + name + "_" + language;
  // Null (not empty) strings keep Qt's default suffix and search. A missing
  // catalogue is not an error: it installs as an empty translator.
  (void)translator.load(QString::fromLatin1(file.c_str()), QString(), QString(), QString());
  const bool installed = QCoreApplication::installTranslator(&translator);
  Translator::language = language;
  return installed;
}

std::string Translator::Tr(const std::string& text, const std::string& context) {
  return QCoreApplication::translate(context.c_str(), text.c_str(), nullptr, -1)
      .toUtf8()
      .toStdString();
}

}  // namespace vm
