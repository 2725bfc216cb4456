#ifndef OVUI_EVENTS_EVENT_H_
#define OVUI_EVENTS_EVENT_H_

#include <map>
#include <string>

#include "base/ref_obj.h"
#include "base/value.h"

namespace events {

// A named event with value parameters. Events are usually created on the
// stack by the emitting code; listeners must not keep the pointer beyond
// OnEvent.
class Event : public base::RefObj<Event>, public base::NoneClonable {
 public:
  // A general-purpose event type name: "changed".
  static const char* const CHANGED;

  explicit Event(const std::string& type) : type(type) {}

  const std::string& GetType() const { return this->type; }
  void SetType(const std::string& type) { this->type = type; }

  // The parameter, or base::Value::null when there is none.
  const base::Value& GetParam(const std::string& name) const;
  // Adds or assigns; assigning a null value keeps the old one's kind.
  void SetParam(const std::string& name, const base::Value& v);
  // The parameter itself, created null when missing. The reference stays
  // valid as long as the event, so code that reuses one event can fill it
  // without looking names up again.
  base::Value& Param(const std::string& name) { return this->params[name]; }

  // "<type>:" then "<name>=<text> " for every parameter in name order.
  std::string ToString() const;

 private:
  std::string type;
  std::map<std::string, base::Value> params;
};

}  // namespace events

#endif  // OVUI_EVENTS_EVENT_H_
