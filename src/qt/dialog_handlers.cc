#include "qt/dialog_handlers.h"

#include <algorithm>
#include <climits>

#include <QColor>
#include <QColorDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>

#include "base/file_utils.h"
#include "base/value.h"
#include "qt/message_box_ex.h"

namespace vm {

namespace {

// Start directory of the next file or directory picker without a default.
QString g_last_dir;

QString Latin1(NavigatorRequest* request, const char* key) {
  const char* text = request->params[key].Str();
  return QString::fromLatin1(text ? text : "");
}

std::string Utf8(const QString& text) {
  return text.toUtf8().toStdString();
}

QString StartDir(NavigatorRequest* request) {
  QString start = Latin1(request, "default");
  if (start.isEmpty()) start = g_last_dir;
  // The remembered directory is kept in backslash form; Qt wants slashes.
  return start.replace('\\', '/');
}

bool ShowMessage(NavigatorRequest* request, QMessageBox::Icon icon,
                 QMessageBox::StandardButtons buttons, QMessageBox::StandardButton default_button,
                 QMessageBox::StandardButton* pressed) {
  const int x = request->params["x"].I32();
  const int y = request->params["y"].I32();
  const bool at_cursor_pos = request->params["at_cursor_pos"].Bool();
  *pressed = ShowMessageBox(icon, Latin1(request, "title"), Latin1(request, "content"), buttons,
                            default_button, x, y, at_cursor_pos);
  return true;
}

// A number from a request as an int, saturated at the int range (NaN gives
// 0): a request may carry any number, and converting one out of range is
// undefined behaviour.
int SaturatedInt(double d) {
  return static_cast<int>(std::clamp<long long>(base::TruncToI64(d), INT_MIN, INT_MAX));
}

// The range of an input dialog: the full int range when min and max are the
// same (or both absent).
void Range(NavigatorRequest* request, double& min, double& max) {
  const base::Value& lo = request->params["min"];
  const base::Value& hi = request->params["max"];
  if (lo.Cmp(hi) == 0 || (lo.IsNull() && hi.IsNull())) {
    min = -2147483647;
    max = 2147483647;
  } else {
    min = lo.F64();
    max = hi.F64();
  }
}

}  // namespace

bool ToastHandler::OnRequest(NavigatorRequest* request) {
  QMessageBox box(nullptr);
  box.setText(Latin1(request, "content"));
  QTimer::singleShot(request->params["timeout"].I32(), &box, SLOT(accept()));
  box.exec();
  return true;
}

bool InfoHandler::OnRequest(NavigatorRequest* request) {
  QMessageBox::StandardButton pressed;
  return ShowMessage(request, QMessageBox::Information, QMessageBox::Ok, QMessageBox::Ok, &pressed);
}

bool WarnHandler::OnRequest(NavigatorRequest* request) {
  QMessageBox::StandardButton pressed;
  return ShowMessage(request, QMessageBox::Warning, QMessageBox::Ok, QMessageBox::Ok, &pressed);
}

bool ConfirmHandler::OnRequest(NavigatorRequest* request) {
  QMessageBox::StandardButton pressed;
  ShowMessage(request, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes,
              &pressed);
  return pressed == QMessageBox::Yes;
}

bool PickDirHandler::OnRequest(NavigatorRequest* request) {
  const QString dir = QFileDialog::getExistingDirectory(
      nullptr, Latin1(request, "title"), StartDir(request), QFileDialog::ShowDirsOnly);
  if (!dir.isEmpty()) g_last_dir = dir;
  request->OnResult(base::Value(Utf8(dir)));
  return !dir.isEmpty();
}

bool PickFileHandler::OnRequest(NavigatorRequest* request) {
  const char* types = request->params["mime_types"].Str();
  QString filter = QString::fromUtf8(types ? types : "");
  if (filter.isEmpty()) filter = QStringLiteral("All Files(*.*)");
  const QString title = Latin1(request, "title");
  const QString start = StartDir(request);

  QString result;
  if (request->params["for_save"].Bool()) {
    result = QFileDialog::getSaveFileName(nullptr, title, start, filter, nullptr, {});
  } else if (request->params["pick_files"].Bool()) {
    // "?" cannot occur in a path, so callers can split on it.
    result = QFileDialog::getOpenFileNames(nullptr, title, start, filter, nullptr, {})
                 .join(QLatin1Char('?'));
  } else {
    result = QFileDialog::getOpenFileName(nullptr, title, start, filter, nullptr, {});
  }
  const std::string text = Utf8(result);
  request->OnResult(base::Value(text));
  g_last_dir = QString::fromStdString(base::FileUtils::DirName(text));
  return !text.empty();
}

bool PickColorHandler::OnRequest(NavigatorRequest* request) {
  QColor initial;
  const char* name = request->params["default"].Str();
  initial.setNamedColor(QLatin1String(name ? name : ""));
  const QColor color = QColorDialog::getColor(initial, nullptr, Latin1(request, "title"), {});
  request->OnResult(base::Value(Utf8(color.name())));
  return color.isValid();
}

bool InputTextHandler::OnRequest(NavigatorRequest* request) {
  bool ok = false;
  const QString text =
      QInputDialog::getText(nullptr, Latin1(request, "title"), Latin1(request, "label"),
                            QLineEdit::Normal, Latin1(request, "default"), &ok, {}, {});
  request->OnResult(base::Value(Utf8(text)));
  return ok;
}

bool InputIntHandler::OnRequest(NavigatorRequest* request) {
  double min = 0, max = 0;
  Range(request, min, max);
  bool ok = false;
  const int value = QInputDialog::getInt(nullptr, Latin1(request, "title"),
                                         Latin1(request, "label"), request->params["default"].I32(),
                                         SaturatedInt(min), SaturatedInt(max), 1, &ok, {});
  request->OnResult(base::Value(value));
  return ok;
}

bool InputFloatHandler::OnRequest(NavigatorRequest* request) {
  double min = 0, max = 0;
  Range(request, min, max);
  bool ok = false;
  const double value =
      QInputDialog::getDouble(nullptr, Latin1(request, "title"), Latin1(request, "label"),
                              request->params["default"].F64(), min, max, 1, &ok, {});
  // Deliberately the whole part only, as an integer.
  request->OnResult(base::Value(SaturatedInt(value)));
  return ok;
}

namespace {

// Constructed when the library is loaded, in this order, so that the
// standard targets are served before any view model runs.
ToastHandler g_toast("toast");
InfoHandler g_info("info");
WarnHandler g_warn("warn");
ConfirmHandler g_confirm("confirm");
PickDirHandler g_pick_dir("pick_dir");
PickFileHandler g_pick_file("pick_file");
PickColorHandler g_pick_color("pick_color");
InputTextHandler g_input_text("input_text");
InputIntHandler g_input_int("input_int");
InputFloatHandler g_input_float("input_float");

}  // namespace

}  // namespace vm
