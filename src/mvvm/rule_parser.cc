#include "mvvm/rule_parser.h"

namespace vm {

namespace {

enum ScanMode { BETWEEN_TOKENS, IN_WORD, IN_QUOTED };

bool IsDelimiter(char c) {
  return c == ',' || c == '{' || c == '}' || c == '=';
}

// ASCII only: the host's locale (Qt sets one) must not change how keys match.
char FoldCase(char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

bool RuleParser::Parse(const std::string& rule, const std::string& tag,
                       const std::string& default_key) {
  this->tag = tag;
  this->default_key = default_key;
  this->state = 0;

  ScanMode mode = BETWEEN_TOKENS;
  int start = 0;
  const int n = static_cast<int>(rule.size());
  for (int i = 0; i < n; ++i) {
    const char c = rule[i];
    if (c == '"') {
      if (mode == BETWEEN_TOKENS) {
        mode = IN_QUOTED;
        start = i;
      } else if (mode == IN_QUOTED && rule[i - 1] != '\\') {
        OnToken(rule.substr(start, i + 1 - start), nullptr, -1, -1);
        mode = BETWEEN_TOKENS;
      }
    } else if (mode == IN_QUOTED) {
      continue;
    } else if (IsDelimiter(c)) {
      if (mode == IN_WORD) OnToken(rule.substr(start, i - start), &rule, start, i);
      OnToken(std::string(1, c), nullptr, -1, -1);
      mode = BETWEEN_TOKENS;
    } else if (c == ' ') {
      if (mode == IN_WORD) OnToken(rule.substr(start, i - start), &rule, start, i);
      mode = BETWEEN_TOKENS;
    } else if (mode == BETWEEN_TOKENS) {
      mode = IN_WORD;
      start = i;
    }
  }
  // Delivered without its position, so a value's spacing before the last word
  // of an unclosed rule is lost; an unclosed quoted text is dropped.
  if (mode == IN_WORD) OnToken(rule.substr(start), nullptr, -1, -1);
  // A rule without its closing brace still delivers its last pair.
  if (!this->key.empty() || !this->value.empty()) OnKeyValue();
  return true;
}

bool RuleParser::OnToken(const std::string& token, const std::string* source, int start, int end) {
  if (token == "{") return true;
  if (token == "}") {
    OnKeyValue();
    return true;
  }

  if (this->state == 0) {
    this->state = 1;
    if (IEqual(token, this->tag)) return false;
  }
  if (this->state == 1) {
    this->key = this->default_key;
    if (!IEqual(token, this->default_key)) {
      this->value = token;
      this->state = 4;
      return false;
    }
    // The default key's own name: read it again as a key.
    this->state = 3;
  }
  if (this->state == 3) {
    if (token == "=") {
      this->state = 4;
    } else if (token == ",") {
      if (IEqual(this->key, this->default_key)) {
        // `{Binding Path, Mode=OneWay}` binds the property named like the key.
        this->value = this->key;
        OnKeyValue();
      } else {
        // A key without "=": the next key replaces it.
        this->key = token;
      }
    } else {
      this->key = token;
    }
    return false;
  }

  // state 4
  if (token == ",") {
    OnKeyValue();
    this->state = 3;
  } else if (source == nullptr || this->value.empty()) {
    this->value += token;
  } else {
    // A further word of the value: keep the spaces written in front of it.
    int from = start;
    while (from > 0 && (*source)[from - 1] == ' ')
      --from;
    this->value.append(*source, from, end - from);
  }
  return false;
}

bool RuleParser::OnKeyValue() {
  OnKeyValue(this->key, this->value);
  this->key.clear();
  this->value.clear();
  return true;
}

bool RuleParser::IEqual(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (FoldCase(a[i]) != FoldCase(b[i])) return false;
  }
  return true;
}

bool RuleParser::IsTrue(const std::string& s) {
  return IEqual(s, "true");
}

}  // namespace vm
