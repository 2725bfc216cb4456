#ifndef OVUI_MVVM_NAVIGATOR_H_
#define OVUI_MVVM_NAVIGATOR_H_

#include <map>
#include <string>

#include "base/ref_obj.h"
#include "base/value.h"

namespace vm {

// A request for the user interface: a target name ("toast", "confirm",
// "pick_file", ...), keyed parameters and a result. Reference counted; the
// creator releases it after Navigator::To returns.
//
// Targets and the parameters their handlers read:
//   "toast"        "content", "timeout" (milliseconds)
//   "info", "warn", "confirm"
//                  "title", "content", "x", "y", "at_cursor_pos"
//   "pick_dir"     "title", "default"                     result: the directory
//   "pick_file"    "title", "default", "for_save", "mime_types", "pick_files"
//                                                         result: path(s)
//   "pick_color"   "title", "default"                     result: "#rrggbb"
//   "input_text"   "title", "label", "default"            result: the text
//   "input_int"    "title", "label", "default", "min", "max"
//   "input_float"  "title", "label", "default", "min", "max"
// "x", "y" and "at_cursor_pos" are the shared placement keys (SetPos/GetPos).
class NavigatorRequest : public base::RefObj<NavigatorRequest> {
 public:
  explicit NavigatorRequest(const std::string& target) : target(target) {}

  // Writes the placement keys "x", "y" and "at_cursor_pos".
  void SetPos(int x, int y, bool at_cursor_pos);
  // Reads them: x and y are both -1 unless both are present; `at_cursor_pos`
  // is left as it was when absent.
  void GetPos(int& x, int& y, bool& at_cursor_pos) const;
  // Stores the handler's answer; override to react when it arrives.
  virtual void OnResult(const base::Value& value);
  // "<target> " then "<key>=<text> " per parameter in key order.
  std::string ToString() const;

  std::string target;
  std::map<std::string, base::Value> params;
  base::Value result;
};

// Serves the requests of one target. Constructing a handler with a target
// registers it, destroying it unregisters that target, so a handler lives
// exactly as long as its registration. A later handler for the same target
// replaces an earlier one.
class NavigatorHandler {
 public:
  NavigatorHandler() = default;
  explicit NavigatorHandler(const std::string& target);
  NavigatorHandler(const NavigatorHandler&) = delete;
  NavigatorHandler& operator=(const NavigatorHandler&) = delete;
  virtual ~NavigatorHandler();

  // Serves `request` synchronously; the base serves nothing (false).
  virtual bool OnRequest(NavigatorRequest* request);

  std::string target;
};

// Routes requests from view models to the handler registered for their
// target. Everything runs on the user-interface thread; handlers may run
// modal dialogs, so To() blocks until the user answers.
//
// Each convenience call builds the request, sends it and, on success only,
// copies the result into its output argument, which also serves as the
// default the dialog shows. A missing handler and a cancelled dialog look
// the same: false, output untouched.
class Navigator {
 public:
  static Navigator* GetInstance();

  // False (logged) for an empty target or a null handler.
  static bool RegisterHandler(const std::string& target, NavigatorHandler* handler);
  // True also when nothing was registered; false (logged) for an empty target.
  static bool UnRegisterHandler(const std::string& target);
  static bool HasHandler(const std::string& target);
  // The handler's answer; false (logged) when nobody serves the target.
  static bool To(NavigatorRequest* request);
  static bool To(const std::string& target);

  static bool Toast(const std::string& content, unsigned int timeout);
  static bool PickColor(const std::string& title, std::string& color);
  static bool PickDir(const std::string& title, std::string& dir);
  static bool InputText(const std::string& title, const std::string& label, std::string& text);
  // The answer is the result: true for yes.
  static bool Confirm(const std::string& title, const std::string& content,
                      bool at_cursor_pos = false, int x = -1, int y = -1);
  static bool Warn(const std::string& title, const std::string& content, bool at_cursor_pos = false,
                   int x = -1, int y = -1);
  static bool Info(const std::string& title, const std::string& content, bool at_cursor_pos = false,
                   int x = -1, int y = -1);
  static bool PickFile(const std::string& title, const std::string& mime_types, std::string& path,
                       bool for_save);
  // Several files through the "pick_file" target with "pick_files" set; the
  // standard handler joins the paths with "?".
  static bool PickFiles(const std::string& title, const std::string& mime_types,
                        std::string& paths);
  static bool InputInt(const std::string& title, const std::string& label, int& value, int min,
                       int max);
  static bool InputFloat(const std::string& title, const std::string& label, double& value,
                         double min, double max);

  static Navigator* instance;

 private:
  Navigator() = default;

  std::map<std::string, NavigatorHandler*> handlers;
};

}  // namespace vm

#endif  // OVUI_MVVM_NAVIGATOR_H_
