#ifndef OVUI_QT_TRANSLATOR_H_
#define OVUI_QT_TRANSLATOR_H_

#include <string>

namespace vm {

// Switches the user-interface language by installing one Qt translation
// catalogue at a time: the file path + name + "_" + language (".qm" is added
// by Qt), e.g. "./lang/" + "app" + "_" + "de". A catalogue that cannot be
// loaded still installs an empty translator, so texts come back unchanged.
// Widgets hear of a change through Qt's own language-change event.
class Translator {
 public:
  // Remembers where the catalogues are, then SetLanguage(language).
  static bool Init(const std::string& path, const std::string& name, const std::string& language);
  // Replaces the installed catalogue; returns Qt's answer, which is false for
  // a catalogue that could not be loaded (installed all the same, empty).
  static bool SetLanguage(const std::string& language);
  // The translation of `text` in `context` (note the order), as UTF-8.
  static std::string Tr(const std::string& text, const std::string& context);

  static std::string path;
  static std::string name;
  // The installed language; empty until the first SetLanguage with one.
  static std::string language;
};

}  // namespace vm

#endif  // OVUI_QT_TRANSLATOR_H_
