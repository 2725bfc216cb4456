#ifndef OVUI_QT_DIALOG_HANDLERS_H_
#define OVUI_QT_DIALOG_HANDLERS_H_

#include "mvvm/navigator.h"

// The standard navigator handlers: one static object of each class registers
// its target when the library is loaded ("toast", "info", "warn", "confirm",
// "pick_dir", "pick_file", "pick_color", "input_text", "input_int",
// "input_float", in that order). An application replaces one by registering
// its own handler for the same target.
//
// Every dialog is modal and parentless. Titles, labels, texts and defaults
// are read as Latin-1 and every text handed back is UTF-8; the file filter
// is read as UTF-8. The file and directory pickers share a remembered
// directory: the start for the next picker whose "default" is empty.
namespace vm {

// A message box that closes itself after "timeout" milliseconds; true once
// it has closed.
class ToastHandler : public NavigatorHandler {
 public:
  using NavigatorHandler::NavigatorHandler;
  bool OnRequest(NavigatorRequest* request) override;
};

// Information box with Ok; true once closed.
class InfoHandler : public NavigatorHandler {
 public:
  using NavigatorHandler::NavigatorHandler;
  bool OnRequest(NavigatorRequest* request) override;
};

// Warning box with Ok; true once closed.
class WarnHandler : public NavigatorHandler {
 public:
  using NavigatorHandler::NavigatorHandler;
  bool OnRequest(NavigatorRequest* request) override;
};

// Question box with Yes and No; true exactly when Yes was pressed.
class ConfirmHandler : public NavigatorHandler {
 public:
  using NavigatorHandler::NavigatorHandler;
  bool OnRequest(NavigatorRequest* request) override;
};

// Directory picker; the result is the chosen directory, true unless empty.
class PickDirHandler : public NavigatorHandler {
 public:
  using NavigatorHandler::NavigatorHandler;
  bool OnRequest(NavigatorRequest* request) override;
};

// File picker for opening, saving ("for_save", which wins) or opening several
// files ("pick_files": the paths joined with "?"). "mime_types" is a Qt
// name-filter list ("Images (*.png);;Text (*.txt)"), "All Files(*.*)" when
// empty. True unless the result is empty.
class PickFileHandler : public NavigatorHandler {
 public:
  using NavigatorHandler::NavigatorHandler;
  bool OnRequest(NavigatorRequest* request) override;
};

// Colour picker; the result is "#rrggbb", true when a colour was chosen.
class PickColorHandler : public NavigatorHandler {
 public:
  using NavigatorHandler::NavigatorHandler;
  bool OnRequest(NavigatorRequest* request) override;
};

// Text input; true when accepted.
class InputTextHandler : public NavigatorHandler {
 public:
  using NavigatorHandler::NavigatorHandler;
  bool OnRequest(NavigatorRequest* request) override;
};

// Integer input between "min" and "max" (the full ±2147483647 range when they
// are equal or absent); true when accepted.
class InputIntHandler : public NavigatorHandler {
 public:
  using NavigatorHandler::NavigatorHandler;
  bool OnRequest(NavigatorRequest* request) override;
};

// Number input with one decimal, ranged as InputIntHandler. The result is
// deliberately the whole part only, as an integer (2.7 gives 2, -2.7 gives -2).
class InputFloatHandler : public NavigatorHandler {
 public:
  using NavigatorHandler::NavigatorHandler;
  bool OnRequest(NavigatorRequest* request) override;
};

}  // namespace vm

#endif  // OVUI_QT_DIALOG_HANDLERS_H_
