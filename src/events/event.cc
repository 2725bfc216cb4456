#include "events/event.h"

namespace events {

const char* const Event::CHANGED = "changed";

const base::Value& Event::GetParam(const std::string& name) const {
  auto it = this->params.find(name);
  return it == this->params.end() ? base::Value::null : it->second;
}

void Event::SetParam(const std::string& name, const base::Value& v) {
  this->params[name] = v;
}

std::string Event::ToString() const {
  std::string out = this->type + ":";
  char buf[64];
  for (const auto& [name, value] : this->params) {
    out += name;
    out += '=';
    if (const char* text = value.ToStr(buf, sizeof(buf))) out += text;
    out += ' ';
  }
  return out;
}

}  // namespace events
