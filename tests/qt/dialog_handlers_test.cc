#include "qt/dialog_handlers.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <fstream>

#include "mvvm/navigator.h"
#include "support/log_capture.h"
#include "support/modal.h"

using ovui_test::OnNextDialog;
using vm::Navigator;

namespace {

void Click(QMessageBox* box, QMessageBox::StandardButton which) {
  QTest::mouseClick(box->button(which), Qt::LeftButton);
}

// Replaces the text of the dialog's entry field as a user would (a file
// dialog's file name, an input dialog's only field).
void TypeInto(QWidget* dialog, const QString& text) {
  auto* edit = dialog->findChild<QLineEdit*>("fileNameEdit");
  if (!edit) edit = dialog->findChild<QLineEdit*>();
  ASSERT_NE(edit, nullptr);
  edit->selectAll();
  for (const QChar c : text) {
    if (c.unicode() < 0x80) {
      QTest::keyClicks(edit, QString(c));
    } else {  // keys QtTest has no code for arrive as text, as from an input method
      QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
  }
}

// QFileDialog hides accept(); through QDialog it runs the file dialog's own.
void Accept(QDialog* dialog) {
  dialog->accept();
}

void PressOk(QWidget* dialog) {
  auto* buttons = dialog->findChild<QDialogButtonBox*>();
  ASSERT_NE(buttons, nullptr);
  QTest::mouseClick(buttons->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

}  // namespace

TEST(DialogHandlersTest, StandardTargetsAreRegisteredAtLoad) {
  for (const char* target : {"toast", "info", "warn", "confirm", "pick_dir", "pick_file",
                             "pick_color", "input_text", "input_int", "input_float"}) {
    EXPECT_TRUE(Navigator::HasHandler(target)) << target;
  }
  EXPECT_FALSE(Navigator::HasHandler("pick_files"));
}

TEST(DialogHandlersTest, ConfirmAnswersYesOnly) {
  OnNextDialog<QMessageBox>([](QMessageBox* box) {
    EXPECT_EQ(box->icon(), QMessageBox::Question);
    EXPECT_EQ(box->windowTitle(), QString::fromUtf8("Delete caf\xC3\xA9?"));  // Latin-1 in
    EXPECT_EQ(box->defaultButton(), box->button(QMessageBox::Yes));
    Click(box, QMessageBox::Yes);
  });
  EXPECT_TRUE(Navigator::Confirm("Delete caf\xE9?", "The file goes."));

  OnNextDialog<QMessageBox>([](QMessageBox* box) { Click(box, QMessageBox::No); });
  EXPECT_FALSE(Navigator::Confirm("t", "c"));
  OnNextDialog<QMessageBox>([](QMessageBox* box) { box->close(); });
  EXPECT_FALSE(Navigator::Confirm("t", "c"));
  OnNextDialog<QMessageBox>([](QMessageBox* box) { box->reject(); });
  EXPECT_FALSE(Navigator::Confirm("t", "c"));
}

TEST(DialogHandlersTest, InfoAndWarnShowTheirIconAndPlacement) {
  OnNextDialog<QMessageBox>([](QMessageBox* box) {
    EXPECT_EQ(box->icon(), QMessageBox::Information);
    EXPECT_EQ(box->text(), "Saved");
    EXPECT_EQ(box->pos(), QPoint(100, 120));  // placed once laid out
    Click(box, QMessageBox::Ok);
  });
  EXPECT_TRUE(Navigator::Info("Info", "Saved", false, 100, 120));
  OnNextDialog<QMessageBox>([](QMessageBox* box) {
    EXPECT_EQ(box->icon(), QMessageBox::Warning);
    box->close();
  });
  EXPECT_TRUE(Navigator::Warn("Warn", "Careful"));
}

TEST(DialogHandlersTest, ToastClosesByItsTimer) {
  QString shown;
  OnNextDialog<QMessageBox>([&](QMessageBox* box) { shown = box->text(); });  // left open
  EXPECT_TRUE(Navigator::Toast("Copied", 30));
  EXPECT_EQ(shown, "Copied");
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST(DialogHandlersTest, InputTextIntAndFloat) {
  std::string text = "old";
  OnNextDialog<QInputDialog>([](QInputDialog* d) {
    EXPECT_EQ(d->textValue(), "old");  // the output argument is the default
    TypeInto(d, QString::fromUtf8("gr\xC3\xBC\xC3\x9F"));
    PressOk(d);
  });
  EXPECT_TRUE(Navigator::InputText("Name", "Your name", text));
  EXPECT_EQ(text, "gr\xC3\xBC\xC3\x9F");  // UTF-8 out
  OnNextDialog<QInputDialog>([](QInputDialog* d) { d->reject(); });
  EXPECT_FALSE(Navigator::InputText("Name", "Your name", text));
  EXPECT_EQ(text, "gr\xC3\xBC\xC3\x9F");

  int count = 3;
  OnNextDialog<QInputDialog>([](QInputDialog* d) {
    EXPECT_EQ(d->intMinimum(), -2147483647);  // min equal to max: the full range
    EXPECT_EQ(d->intMaximum(), 2147483647);
    TypeInto(d, "-42");
    PressOk(d);
  });
  EXPECT_TRUE(Navigator::InputInt("Count", "How many", count, 5, 5));
  EXPECT_EQ(count, -42);
  OnNextDialog<QInputDialog>([](QInputDialog* d) {
    EXPECT_EQ(d->intMinimum(), 1);
    EXPECT_EQ(d->intMaximum(), 10);
    PressOk(d);
  });
  EXPECT_TRUE(Navigator::InputInt("Count", "How many", count, 1, 10));

  for (const double typed : {2.7, -2.7}) {
    double value = 0.5;
    OnNextDialog<QInputDialog>([typed](QInputDialog* d) {
      EXPECT_EQ(d->doubleDecimals(), 1);
      d->setDoubleValue(typed);
      PressOk(d);
    });
    EXPECT_TRUE(Navigator::InputFloat("Ratio", "Ratio", value, 0, 0));
    EXPECT_EQ(value, typed > 0 ? 2.0 : -2.0);  // only the whole part comes back
  }
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

TEST(DialogHandlersTest, PickFilesAndTheRememberedDirectory) {
  ovui_test::TempDir dir;
  const QString root = QString::fromStdString(dir.Path());
  for (const char* name : {"x.txt", "y.txt"})
    std::ofstream(dir.File(name)) << name;

  std::string path = dir.File("x.txt");
  OnNextDialog<QFileDialog>([&](QFileDialog* d) {
    EXPECT_EQ(d->fileMode(), QFileDialog::ExistingFile);
    EXPECT_EQ(d->nameFilters(), QStringList{"Text (*.txt)"});
    TypeInto(d, "y.txt");
    Accept(d);
  });
  EXPECT_TRUE(Navigator::PickFile("Open", "Text (*.txt)", path, false));
  EXPECT_EQ(path, dir.File("y.txt"));

  // Without a default, the next picker starts where the last one ended.
  std::string paths;
  OnNextDialog<QFileDialog>([&](QFileDialog* d) {
    EXPECT_EQ(d->directory().absolutePath(), root);
    EXPECT_EQ(d->fileMode(), QFileDialog::ExistingFiles);
    EXPECT_EQ(d->nameFilters(), QStringList{"All Files(*.*)"});
    // Pasted: typed key by key, the quotes set off the dialog's completer.
    d->findChild<QLineEdit*>("fileNameEdit")->setText("\"x.txt\" \"y.txt\"");
    Accept(d);
  });
  EXPECT_TRUE(Navigator::PickFiles("Open", "", paths));
  EXPECT_EQ(paths, dir.File("x.txt") + "?" + dir.File("y.txt"));

  std::string saved;
  OnNextDialog<QFileDialog>([&](QFileDialog* d) {
    EXPECT_EQ(d->acceptMode(), QFileDialog::AcceptSave);
    TypeInto(d, "new.txt");
    Accept(d);
  });
  EXPECT_TRUE(Navigator::PickFile("Save", "", saved, true));
  EXPECT_EQ(saved, dir.File("new.txt"));

  OnNextDialog<QFileDialog>([](QFileDialog* d) { d->reject(); });
  EXPECT_FALSE(Navigator::PickFile("Open", "", saved, false));
  EXPECT_EQ(saved, dir.File("new.txt"));
}

TEST(DialogHandlersTest, PickDir) {
  ovui_test::TempDir dir;
  std::string chosen = dir.Path();
  OnNextDialog<QFileDialog>([](QFileDialog* d) {
    EXPECT_TRUE(d->testOption(QFileDialog::ShowDirsOnly));
    Accept(d);  // the start directory itself
  });
  EXPECT_TRUE(Navigator::PickDir("Folder", chosen));
  EXPECT_EQ(chosen, dir.Path());
}
