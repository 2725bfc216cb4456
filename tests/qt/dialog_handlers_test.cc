#include "qt/dialog_handlers.h"

#include <gtest/gtest.h>

#include <climits>

#include <QColorDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <fstream>

#include "mvvm/navigator.h"
#include "support/log_capture.h"
#include "support/modal.h"

using ovui_test::OnNextDialog;
using vm::Navigator;

namespace {

// Enters `names` in a file dialog's name field and accepts, through QDialog:
// QFileDialog's own accept() is protected.
void Choose(QDialog* dialog, const char* names) {
  dialog->findChild<QLineEdit*>("fileNameEdit")->setText(names);
  dialog->accept();
}

}  // namespace

TEST(DialogHandlersTest, MessageBoxesShowTheirIconInPlaceAndAnswerYesOnly) {
  using Box = QMessageBox;
  const struct {
    bool (*show)(const std::string&, const std::string&, bool, int, int);
    Box::Icon icon;
    Box::StandardButton pressed;  // NoButton: closed without one
    bool answer;
  } cases[] = {{Navigator::Info, Box::Information, Box::Ok, true},
               {Navigator::Warn, Box::Warning, Box::NoButton, true},
               {Navigator::Confirm, Box::Question, Box::Yes, true},
               {Navigator::Confirm, Box::Question, Box::No, false},
               {Navigator::Confirm, Box::Question, Box::NoButton, false}};
  for (const auto& c : cases) {
    OnNextDialog<Box>([&c](Box* box) {
      EXPECT_EQ(box->icon(), c.icon);
      EXPECT_EQ(box->text(), "Saved");
      EXPECT_EQ(box->pos(), QPoint(100, 120));  // placed once laid out
      EXPECT_EQ(box->defaultButton(), box->button(c.icon == Box::Question ? Box::Yes : Box::Ok));
      if (c.pressed == Box::NoButton) return box->reject();
      box->button(c.pressed)->click();
    });
    EXPECT_EQ(c.show("t", "Saved", false, 100, 120), c.answer) << c.icon << " " << c.pressed;
  }
  QString shown;  // a toast is left open: only its own timer can close it
  OnNextDialog<Box>([&](Box* box) { shown = box->text(); });
  EXPECT_TRUE(Navigator::Toast("Copied", 30));
  EXPECT_EQ(shown, "Copied");
}

TEST(DialogHandlersTest, InputTextFloatAndColour) {
  std::string text = "old";
  OnNextDialog<QInputDialog>([](QInputDialog* d) {
    EXPECT_EQ(d->windowTitle(), QString::fromUtf8("Caf\xC3\xA9"));  // Latin-1 in
    EXPECT_EQ(d->textValue(), "old");                          // the output argument is the default
    d->setTextValue(QString::fromUtf8("gr\xC3\xBC\xC3\x9F"));  // UTF-8 out
    d->accept();
  });
  EXPECT_TRUE(Navigator::InputText("Caf\xE9", "Your name", text));
  EXPECT_EQ(text, "gr\xC3\xBC\xC3\x9F");

  double value = 0.5;
  OnNextDialog<QInputDialog>([](QInputDialog* d) {
    EXPECT_EQ(d->doubleDecimals(), 1);
    d->setDoubleValue(-2.7);  // only the whole part comes back
    d->accept();
  });
  EXPECT_TRUE(Navigator::InputFloat("Ratio", "Ratio", value, 0, 0));
  EXPECT_EQ(value, -2.0);

  std::string color = "#ff0000";
  OnNextDialog<QColorDialog>([](QColorDialog* d) {
    EXPECT_EQ(d->currentColor(), QColor(255, 0, 0));
    d->setCurrentColor(QColor(0x12, 0x34, 0x56));
    d->accept();
  });
  EXPECT_TRUE(Navigator::PickColor("Colour", color));
  EXPECT_EQ(color, "#123456");
  OnNextDialog<QColorDialog>([](QColorDialog* d) { d->reject(); });
  EXPECT_FALSE(Navigator::PickColor("Colour", color));
  EXPECT_EQ(color, "#123456");
}

// A request may carry any numbers: min == max is no range, and ranges and
// answers beyond int saturate.
TEST(DialogHandlersTest, InputRanges) {
  const struct {
    const char* target;
    double min, max, typed;
    int lo, hi;  // the dialog's int range
    long long result;
  } cases[] = {{"input_int", 5, 10, -42, 5, 10, 5},
               {"input_int", 5, 5, -42, -INT_MAX, INT_MAX, -42},
               {"input_int", -1e20, 1e30, INT_MIN, INT_MIN, INT_MAX, INT_MIN},
               {"input_float", -1e300, 1e300, 1e12, 0, 0, INT_MAX}};
  for (const auto& c : cases) {
    auto* request = new vm::NavigatorRequest(c.target);
    request->params["min"] = c.min;
    request->params["max"] = c.max;
    OnNextDialog<QInputDialog>([&c](QInputDialog* d) {
      const bool whole = d->inputMode() == QInputDialog::IntInput;
      EXPECT_TRUE(!whole || (d->intMinimum() == c.lo && d->intMaximum() == c.hi)) << c.min;
      if (whole) d->setIntValue(static_cast<int>(c.typed));
      if (!whole) d->setDoubleValue(c.typed);
      d->accept();
    });
    EXPECT_TRUE(Navigator::To(request));
    EXPECT_EQ(request->result.I64(), c.result) << c.min;
    request->Release();
  }
}

TEST(DialogHandlersTest, PickFilesAndDirectoriesFromTheRememberedOne) {
  ovui_test::TempDir dir;
  for (const char* name : {"x.txt", "y.txt"})
    std::ofstream(dir.File(name)) << name;
  std::string path = dir.File("x.txt"), paths, saved, chosen = dir.Path();
  OnNextDialog<QFileDialog>([&](QFileDialog* d) {
    EXPECT_EQ(d->nameFilters(), QStringList{"Text (*.txt)"});
    Choose(d, "y.txt");
  });
  EXPECT_TRUE(Navigator::PickFile("Open", "Text (*.txt)", path, false));
  EXPECT_EQ(path, dir.File("y.txt"));
  QFileDialog().setDirectory(QDir::tempPath());    // moves the directory Qt itself remembers
  OnNextDialog<QFileDialog>([&](QFileDialog* d) {  // no default: where the last one ended
    EXPECT_EQ(d->directory().absolutePath(), QString::fromStdString(dir.Path()));
    Choose(d, "\"x.txt\" \"y.txt\"");
  });
  EXPECT_TRUE(Navigator::PickFiles("Open", "", paths));
  EXPECT_EQ(paths, dir.File("x.txt") + "?" + dir.File("y.txt"));
  OnNextDialog<QFileDialog>([](QFileDialog* d) { Choose(d, "new.txt"); });  // a new name
  EXPECT_TRUE(Navigator::PickFile("Save", "", saved, true));
  EXPECT_EQ(saved, dir.File("new.txt"));
  OnNextDialog<QFileDialog>([](QFileDialog* d) { Choose(d, ""); });  // the start directory
  EXPECT_TRUE(Navigator::PickDir("Folder", chosen));
  EXPECT_EQ(chosen, dir.Path());
}
