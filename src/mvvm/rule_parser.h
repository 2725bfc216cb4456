#ifndef OVUI_MVVM_RULE_PARSER_H_
#define OVUI_MVVM_RULE_PARSER_H_

#include <string>

namespace vm {

// Scans a binding rule such as `{Binding Path=Name, Mode=OneWay}` into
// key/value pairs and hands each pair to the subclass's OnKeyValue(key, value).
//
// The parser never rejects a rule: braces are optional, the tag is optional,
// a leading value without a key belongs to the default key, a key without "="
// is replaced by the next one, an unterminated quoted text is dropped.
//
// Scanning: only the space separates words; ",", "{", "}" and "=" are tokens of
// their own; a double quote between tokens starts a quoted text, delivered with
// its quotes (a backslash before a quote keeps it inside and is kept too).
// Values keep their inner spacing exactly; "}" flushes the pending pair, and
// so does the end of a rule written without its closing brace, but there the
// last word comes without its position and loses the spaces before it:
// `{Binding Converter=to upper` gives the value "toupper".
//
// A parser is made for one rule: key and value are not reset by Parse.
class RuleParser {
 public:
  RuleParser() = default;
  RuleParser(const RuleParser&) = delete;
  RuleParser& operator=(const RuleParser&) = delete;
  virtual ~RuleParser() = default;

  // Scans `rule`, whose optional first word is `tag` and whose leading value
  // without a key belongs to `default_key`. Always true.
  bool Parse(const std::string& rule, const std::string& tag, const std::string& default_key);

  // Advances the grammar by one token. `source`, `start` and `end` locate a
  // bare word in the rule text (`end` just past it); they are null and -1 for
  // delimiters, quoted texts and the rule's last word. True for "{" and "}".
  bool OnToken(const std::string& token, const std::string* source, int start, int end);

  // Delivers the pending pair, even an empty one, and clears it.
  bool OnKeyValue();

  // One pair of the rule, in the order written. The result is ignored.
  virtual bool OnKeyValue(const std::string& key, const std::string& value) = 0;

  // Equal ignoring ASCII letter case.
  static bool IEqual(const std::string& a, const std::string& b);
  // "true" in any letter case; everything else ("1", "yes", "") is false.
  static bool IsTrue(const std::string& s);

 protected:
  std::string key;
  std::string value;
  std::string tag;
  std::string default_key;
  // 0 expecting the tag, 1 expecting the first item, 3 expecting a key,
  // 4 collecting a value.
  int state = 0;
};

}  // namespace vm

#endif  // OVUI_MVVM_RULE_PARSER_H_
