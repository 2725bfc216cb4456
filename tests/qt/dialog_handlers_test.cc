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

TEST(DialogHandlersTest, StandardTargetsAreRegisteredAtLoad) {
  for (const char* target : {"toast", "info", "warn", "confirm", "pick_dir", "pick_file",
                             "pick_color", "input_text", "input_int", "input_float"})
    EXPECT_TRUE(Navigator::HasHandler(target)) << target;
}

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
}

TEST(DialogHandlersTest, ToastClosesByItsTimer) {
  QString shown;
  // Left open by the test: only its own timer can close it.
  OnNextDialog<QMessageBox>([&](QMessageBox* box) { shown = box->text(); });
  EXPECT_TRUE(Navigator::Toast("Copied", 30));
  EXPECT_EQ(shown, "Copied");
}

TEST(DialogHandlersTest, InputTextIntAndFloat) {
  std::string text = "old";
  OnNextDialog<QInputDialog>([](QInputDialog* d) {
    EXPECT_EQ(d->windowTitle(), QString::fromUtf8("Caf\xC3\xA9"));  // Latin-1 in
    EXPECT_EQ(d->textValue(), "old");  // the output argument is the default
    d->setTextValue(QString::fromUtf8("gr\xC3\xBC\xC3\x9F"));
    d->accept();
  });
  EXPECT_TRUE(Navigator::InputText("Caf\xE9", "Your name", text));
  EXPECT_EQ(text, "gr\xC3\xBC\xC3\x9F");  // UTF-8 out

  for (const int max : {5, 10}) {  // min 5 and max 5: the full range
    int count = 3;
    OnNextDialog<QInputDialog>([max](QInputDialog* d) {
      EXPECT_EQ(d->intMinimum(), max == 5 ? -2147483647 : 5);
      EXPECT_EQ(d->intMaximum(), max == 5 ? 2147483647 : 10);
      d->setIntValue(-42);
      d->accept();
    });
    EXPECT_TRUE(Navigator::InputInt("Count", "How many", count, 5, max));
    EXPECT_EQ(count, max == 5 ? -42 : 5);  // else kept in range
  }

  for (const double typed : {2.7, -2.7}) {
    double value = 0.5;
    OnNextDialog<QInputDialog>([typed](QInputDialog* d) {
      EXPECT_EQ(d->doubleDecimals(), 1);
      d->setDoubleValue(typed);
      d->accept();
    });
    EXPECT_TRUE(Navigator::InputFloat("Ratio", "Ratio", value, 0, 0));
    EXPECT_EQ(value, typed > 0 ? 2.0 : -2.0);  // only the whole part comes back
  }
}

// A request may carry any numbers: ranges and answers beyond int saturate.
TEST(DialogHandlersTest, InputRangesBeyondInt) {
  auto* request = new vm::NavigatorRequest("input_int");
  request->params["min"] = -1e20;
  request->params["max"] = 1e30;
  OnNextDialog<QInputDialog>([](QInputDialog* d) {
    EXPECT_EQ(d->intMinimum(), INT_MIN);
    EXPECT_EQ(d->intMaximum(), INT_MAX);
    d->setIntValue(INT_MIN);
    d->accept();
  });
  EXPECT_TRUE(Navigator::To(request));
  EXPECT_EQ(request->result.I64(), INT_MIN);

  request->target = "input_float";
  request->params["min"] = -1e300;
  request->params["max"] = 1e300;
  OnNextDialog<QInputDialog>([](QInputDialog* d) {
    d->setDoubleValue(1e12);
    d->accept();
  });
  EXPECT_TRUE(Navigator::To(request));
  EXPECT_EQ(request->result.I64(), INT_MAX);
  request->Release();
}

TEST(DialogHandlersTest, PickColor) {
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

TEST(DialogHandlersTest, PickFilesAndDirectoriesFromTheRememberedOne) {
  ovui_test::TempDir dir;
  for (const char* name : {"x.txt", "y.txt"})
    std::ofstream(dir.File(name)) << name;
  std::string path = dir.File("x.txt"), paths, saved, chosen = dir.Path();
  OnNextDialog<QFileDialog>([&](QFileDialog* d) {
    EXPECT_EQ(d->fileMode(), QFileDialog::ExistingFile);
    EXPECT_EQ(d->nameFilters(), QStringList{"Text (*.txt)"});
    Choose(d, "y.txt");
  });
  EXPECT_TRUE(Navigator::PickFile("Open", "Text (*.txt)", path, false));
  EXPECT_EQ(path, dir.File("y.txt"));
  QFileDialog().setDirectory(QDir::tempPath());    // moves the directory Qt itself remembers
  OnNextDialog<QFileDialog>([&](QFileDialog* d) {  // no default: where the last one ended
    EXPECT_EQ(d->directory().absolutePath(), QString::fromStdString(dir.Path()));
    EXPECT_EQ(d->fileMode(), QFileDialog::ExistingFiles);
    EXPECT_EQ(d->nameFilters(), QStringList{"All Files(*.*)"});
    Choose(d, "\"x.txt\" \"y.txt\"");
  });
  EXPECT_TRUE(Navigator::PickFiles("Open", "", paths));
  EXPECT_EQ(paths, dir.File("x.txt") + "?" + dir.File("y.txt"));
  OnNextDialog<QFileDialog>([&](QFileDialog* d) {
    EXPECT_EQ(d->acceptMode(), QFileDialog::AcceptSave);
    Choose(d, "new.txt");
  });
  EXPECT_TRUE(Navigator::PickFile("Save", "", saved, true));
  EXPECT_EQ(saved, dir.File("new.txt"));

  OnNextDialog<QFileDialog>([](QFileDialog* d) {
    EXPECT_TRUE(d->testOption(QFileDialog::ShowDirsOnly));
    Choose(d, "");  // the start directory itself
  });
  EXPECT_TRUE(Navigator::PickDir("Folder", chosen));
  EXPECT_EQ(chosen, dir.Path());
}
