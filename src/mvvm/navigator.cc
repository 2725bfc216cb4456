#include "mvvm/navigator.h"

#include "base/log.h"

namespace vm {

Navigator* Navigator::instance = nullptr;

namespace {

std::string TextOf(const base::Value& v) {
  const char* text = v.Str();
  return text ? text : "";
}

// Sends `request`, lets `read` copy the result out when it succeeded, and
// releases the request.
template <typename Read>
bool Send(NavigatorRequest* request, Read read) {
  const bool ok = Navigator::To(request);
  if (ok) read(request->result);
  request->Release();
  return ok;
}

bool SendMessage(const char* target, const std::string& title, const std::string& content,
                 bool at_cursor_pos, int x, int y) {
  auto* request = new NavigatorRequest(target);
  request->params["title"] = title;
  request->params["content"] = content;
  request->params["x"] = x;
  request->params["y"] = y;
  request->params["at_cursor_pos"] = at_cursor_pos;
  return Send(request, [](const base::Value&) {});
}

// One or several files through "pick_file"; `text` is the default shown and
// receives the answer.
bool SendPickFile(const std::string& title, const std::string& mime_types, std::string& text,
                  bool for_save, bool pick_files) {
  auto* request = new NavigatorRequest("pick_file");
  request->params["title"] = title;
  request->params["for_save"] = for_save;
  request->params["mime_types"] = mime_types;
  request->params["default"] = text;
  request->params["pick_files"] = pick_files;
  return Send(request, [&](const base::Value& r) { text = TextOf(r); });
}

}  // namespace

void NavigatorRequest::SetPos(int x, int y, bool at_cursor_pos) {
  this->params["x"] = x;
  this->params["y"] = y;
  this->params["at_cursor_pos"] = at_cursor_pos;
}

void NavigatorRequest::GetPos(int& x, int& y, bool& at_cursor_pos) const {
  auto px = this->params.find("x");
  auto py = this->params.find("y");
  if (px != this->params.end() && py != this->params.end()) {
    x = px->second.I32();
    y = py->second.I32();
  } else {
    x = -1;
    y = -1;
  }
  auto pc = this->params.find("at_cursor_pos");
  if (pc != this->params.end()) at_cursor_pos = pc->second.Bool();
}

void NavigatorRequest::OnResult(const base::Value& value) {
  this->result = value;
}

std::string NavigatorRequest::ToString() const {
  std::string out = this->target + " ";
  char buf[64];
  for (const auto& [key, value] : this->params) {
    out += key;
    out += '=';
    if (const char* text = value.ToStr(buf, sizeof(buf))) out += text;
    out += ' ';
  }
  return out;
}

NavigatorHandler::NavigatorHandler(const std::string& target) : target(target) {
  if (!target.empty()) Navigator::RegisterHandler(target, this);
}

NavigatorHandler::~NavigatorHandler() {
  if (!this->target.empty()) Navigator::UnRegisterHandler(this->target);
}

bool NavigatorHandler::OnRequest(NavigatorRequest* request) {
  (void)request;
  return false;
}

Navigator* Navigator::GetInstance() {
  if (!instance) instance = new Navigator();
  return instance;
}

bool Navigator::RegisterHandler(const std::string& target, NavigatorHandler* handler) {
  OVUI_CHECK(target.size() && handler != NULL, false);
  GetInstance()->handlers[target] = handler;
  return true;
}

bool Navigator::UnRegisterHandler(const std::string& target) {
  OVUI_CHECK(target.size(), false);
  GetInstance()->handlers.erase(target);
  return true;
}

bool Navigator::HasHandler(const std::string& target) {
  OVUI_CHECK(target.size(), false);
  return GetInstance()->handlers.count(target) != 0;
}

bool Navigator::To(NavigatorRequest* request) {
  OVUI_CHECK(request != NULL, false);
  Navigator* navigator = GetInstance();
  auto iter = navigator->handlers.find(request->target);
  OVUI_CHECK(iter != navigator->handlers.end(), false);
  return iter->second->OnRequest(request);
}

bool Navigator::To(const std::string& target) {
  return Send(new NavigatorRequest(target), [](const base::Value&) {});
}

bool Navigator::Toast(const std::string& content, unsigned int timeout) {
  auto* request = new NavigatorRequest("toast");
  request->params["content"] = content;
  request->params["timeout"] = static_cast<long long>(timeout);
  return Send(request, [](const base::Value&) {});
}

bool Navigator::PickColor(const std::string& title, std::string& color) {
  auto* request = new NavigatorRequest("pick_color");
  request->params["title"] = title;
  request->params["default"] = color;
  return Send(request, [&](const base::Value& r) { color = TextOf(r); });
}

bool Navigator::PickDir(const std::string& title, std::string& dir) {
  auto* request = new NavigatorRequest("pick_dir");
  request->params["title"] = title;
  request->params["default"] = dir;
  return Send(request, [&](const base::Value& r) { dir = TextOf(r); });
}

bool Navigator::InputText(const std::string& title, const std::string& label, std::string& text) {
  auto* request = new NavigatorRequest("input_text");
  request->params["title"] = title;
  request->params["label"] = label;
  request->params["default"] = text;
  return Send(request, [&](const base::Value& r) { text = TextOf(r); });
}

bool Navigator::Confirm(const std::string& title, const std::string& content, bool at_cursor_pos,
                        int x, int y) {
  return SendMessage("confirm", title, content, at_cursor_pos, x, y);
}

bool Navigator::Warn(const std::string& title, const std::string& content, bool at_cursor_pos,
                     int x, int y) {
  return SendMessage("warn", title, content, at_cursor_pos, x, y);
}

bool Navigator::Info(const std::string& title, const std::string& content, bool at_cursor_pos,
                     int x, int y) {
  return SendMessage("info", title, content, at_cursor_pos, x, y);
}

bool Navigator::PickFile(const std::string& title, const std::string& mime_types, std::string& path,
                         bool for_save) {
  return SendPickFile(title, mime_types, path, for_save, false);
}

bool Navigator::PickFiles(const std::string& title, const std::string& mime_types,
                          std::string& paths) {
  return SendPickFile(title, mime_types, paths, false, true);
}

bool Navigator::InputInt(const std::string& title, const std::string& label, int& value, int min,
                         int max) {
  auto* request = new NavigatorRequest("input_int");
  request->params["title"] = title;
  request->params["label"] = label;
  request->params["min"] = min;
  request->params["max"] = max;
  request->params["default"] = value;
  return Send(request, [&](const base::Value& r) { value = r.I32(); });
}

bool Navigator::InputFloat(const std::string& title, const std::string& label, double& value,
                           double min, double max) {
  auto* request = new NavigatorRequest("input_float");
  request->params["title"] = title;
  request->params["label"] = label;
  request->params["min"] = min;
  request->params["max"] = max;
  request->params["default"] = value;
  return Send(request, [&](const base::Value& r) { value = r.F64(); });
}

}  // namespace vm
