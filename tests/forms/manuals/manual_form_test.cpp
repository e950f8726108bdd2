#include "forms/manuals/manual_form.h"

#include "forms/manuals/manual_text.h"
#include "forms/manuals/slot_colours.h"
#include "support/dialog_script.h"
#include "support/fake_prompts.h"
#include "support/temp_folder.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QMimeData>
#include <QTest>

#include <gmock/gmock.h>

#include <fstream>
#include <set>

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Two sure commands, two of which either could be the first input, and a line that nobody asked for.
constexpr const char* kPage =
    "Baud rate 19200 bps, data 8 bit, parity none, stop bit 1\n"
    "All commands end with CR (0Dh).\n"
    "\n"
    "Function          Code\n"
    "Power on          50 57 31 0D\n"
    "Power off         50 57 30 0D\n"
    "Computer 1        49 4E 31 0D\n"
    "Video             49 4E 33 0D\n";

class FromManual : public testing::Test {
 protected:
  FromManual() : form_(prompts_) { ShowActive(form_); }

  template <class Widget>
  Widget& Find(const char* name) {
    return Child<Widget>(form_, name);
  }
  ManualText& Text() { return Find<ManualText>("PageText"); }
  // Waits for the pause after which the text is read.
  void Paste(const QString& text) {
    Text().insertPlainText(text);
    EXPECT_TRUE(Soon([this] { return Find<QCheckBox>("Take_1").isVisible(); }));
  }
  template <class Condition>
  static bool Soon(Condition condition) {
    return QTest::qWaitFor(condition, 10'000);
  }
  QString Hex(int slot) { return Find<QLabel>(qPrintable(QStringLiteral("Bytes_%1").arg(slot))).text(); }
  std::vector<std::size_t> Taken() {
    std::vector<std::size_t> slots;
    for (const ManualString& taken : form_.Choices().Strings) slots.push_back(taken.Slot);
    return slots;
  }
  void Select(const QString& piece) {
    const auto from = static_cast<int>(Text().toPlainText().indexOf(piece));
    ASSERT_GE(from, 0);
    QTextCursor cursor = Text().textCursor();
    cursor.setPosition(from);
    cursor.setPosition(from + static_cast<int>(piece.size()), QTextCursor::KeepAnchor);
    Text().setTextCursor(cursor);
  }
  void MarkAs(int slot) { Find<QAction>(qPrintable(QStringLiteral("MarkAs_%1").arg(slot))).trigger(); }

  FakePrompts prompts_;
  ManualForm form_;
};

TEST_F(FromManual, TakesWhatIsTickedAndLeavesTheRest) {
  EXPECT_FALSE(Find<QPushButton>("Done").isEnabled());
  Paste(QString::fromLatin1(kPage));
  EXPECT_EQ(Hex(1), QStringLiteral("50 57 31 0D"));
  ASSERT_TRUE(Find<QCheckBox>("Take_8").isChecked()) << "sure";
  QTest::keyClick(&Find<QCheckBox>("Take_8"), Qt::Key_Space);
  QTest::keyClick(&Find<QCheckBox>("TakeParity"), Qt::Key_Space);
  const ManualChoices choices = form_.Choices();
  EXPECT_EQ(choices.Line.Speed, 19200);
  EXPECT_FALSE(choices.Line.Parity);
  EXPECT_THAT(Taken(), testing::Contains(1U));
  EXPECT_THAT(Taken(), testing::Not(testing::Contains(8U)));
  Click(form_, "Done");
  EXPECT_EQ(form_.result(), QDialog::Accepted);
}

TEST_F(FromManual, TextAndRowsPointAtEachOther) {
  Paste(QString::fromLatin1(kPage));
  Select(QStringLiteral("57 30"));
  QTest::keyClick(&Text(), Qt::Key_Left);
  EXPECT_TRUE(Find<QCheckBox>("Take_8").font().bold());
  EXPECT_THAT(Find<QLabel>("Status").text().toStdString(), HasSubstr("Power off"));
  Find<QCheckBox>("Take_1").setFocus();
  EXPECT_TRUE(Find<QCheckBox>("Take_1").font().bold());
  EXPECT_FALSE(Find<QCheckBox>("Take_8").font().bold());
  EXPECT_EQ(Text().textCursor().blockNumber(), 4);
  for (const auto& selection : Text().extraSelections()) {
    if (selection.cursor.blockNumber() == 5) {
      EXPECT_EQ(selection.format.background().color(), SlotColour(8, form_.palette()));
    }
  }
}

TEST_F(FromManual, ASelectedPieceBecomesTheCommandThatIsNamed) {
  Paste(QString::fromLatin1(kPage) + QStringLiteral("mystery 4D 31 0D\n"));
  EXPECT_FALSE(Find<QPushButton>("MarkCommand").isEnabled());
  Select(QStringLiteral("4D 31 0D\n"));
  EXPECT_TRUE(Find<QPushButton>("MarkCommand").isEnabled());
  MarkAs(5);
  EXPECT_EQ(Hex(5), QStringLiteral("4D 31 0D"));
  EXPECT_TRUE(Find<QCheckBox>("Take_5").isChecked());

  // It stays when the text is read again, with another page behind it.
  QGuiApplication::clipboard()->setText(QStringLiteral("Volume up   56 2B 0D\nVolume down 56 2D 0D\n"));
  Click(form_, "AddPage");
  EXPECT_EQ(Hex(5), QStringLiteral("4D 31 0D"));
  EXPECT_EQ(Hex(6), QStringLiteral("56 2B 0D"));
  EXPECT_EQ(Hex(1), QStringLiteral("50 57 31 0D"));

  Select(QStringLiteral("Baud rate 19200 bps, data 8 bit, parity none, stop bit 1"));
  MarkAs(0);
  EXPECT_EQ(prompts_.Shown.size(), 1U);
  EXPECT_FALSE(Find<QCheckBox>("Take_0").isVisible());
}

TEST_F(FromManual, EverythingIsReachedByKeys) {
  Paste(QString::fromLatin1(kPage));
  Text().setFocus();
  std::set<const QWidget*> reached;
  for (QWidget* widget = form_.focusWidget(); reached.insert(widget).second; widget = form_.focusWidget())
    QTest::keyClick(widget, Qt::Key_Tab);
  for (const QWidget* widget : form_.findChildren<QWidget*>()) {
    const bool control =
        qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QComboBox*>(widget);
    if (!control || !widget->isVisible() || !widget->isEnabled()) continue;
    EXPECT_TRUE(reached.contains(widget)) << widget->objectName().toStdString();
  }
  EXPECT_LE(form_.height(), 700);
  EXPECT_LE(form_.minimumSizeHint().width(), 1300);
}

TEST_F(FromManual, AnAlternativeThatIsChosenIsTicked) {
  Paste(QString::fromLatin1(kPage) + QStringLiteral("Computer 2        49 4E 32 0D\n"
                                                    "HDMI 1            49 4E 34 0D\n"
                                                    "HDMI 2            49 4E 35 0D\n"));
  auto& candidates = Find<QComboBox>("Candidates_3");
  ASSERT_GT(candidates.count(), 1);
  const QString first = Hex(3);
  Find<QCheckBox>("Take_3").setChecked(false);
  candidates.setFocus();
  QTest::keyClick(&candidates, Qt::Key_Down);
  EXPECT_NE(Hex(3), first);
  EXPECT_TRUE(Find<QCheckBox>("Take_3").isChecked());
}

TEST_F(FromManual, FilesAreReadWhateverTheirEncoding) {
  const TempFolder folder;
  const auto give = [&](const QByteArray& bytes) {
    const QString name = QString::fromStdString((folder / "page.txt").string());
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(name)});
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    Text().clear();
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&form_, &enter);
    QCoreApplication::sendEvent(&form_, &drop);
    return Text().toPlainText();
  };
  const QString text = QStringLiteral("Größe\nPower on 50 57 31 0D");
  EXPECT_EQ(give("Gr\xC3\xB6\xC3\x9F"
                 "e\r\nPower on 50 57 31 0D"),
            text);
  EXPECT_EQ(give("Gr\xF6\xDF"
                 "e\rPower on 50 57 31 0D"),
            text);
  EXPECT_EQ(give(QByteArray("\xFF\xFEG\0r\0\xF6\0\xDF\0e\0", 12)), QStringLiteral("Größe"));
  auto* twice = new QMimeData;
  const QUrl file = QUrl::fromLocalFile(QString::fromStdString((folder / "page.txt").string()));
  twice->setUrls({file, file});
  QGuiApplication::clipboard()->setMimeData(twice);
  Text().paste();
  EXPECT_EQ(Text().toPlainText().count(QStringLiteral("Größe")), 3) << "as pages behind the first";
  EXPECT_EQ(give(QByteArray("PK\0\1", 4)), QString());
  EXPECT_THAT(prompts_.LastText(), HasSubstr("page.txt is neither text nor a PDF"));
}

#ifndef _WIN32
// A program of that name in a folder of its own, which is all that the path holds.
class FromPdf : public FromManual {
 protected:
  ~FromPdf() override { qputenv("PATH", path_); }

  void InstallProgram(const std::string& script) {
    const std::filesystem::path program = folder_ / "pdftotext";
    std::ofstream(program) << "#!/bin/sh\n" << script;
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  }
  void Open() {
    qputenv("PATH", QByteArray::fromStdString(folder_.Path().string()));
    prompts_.Files = {QStringLiteral("/manuals/P 1.PDF")};
    Click(form_, "OpenFile");
  }

  TempFolder folder_;
  QByteArray path_ = qgetenv("PATH");
};

TEST_F(FromPdf, TheExtractionThatTellsMoreIsTaken) {
  InstallProgram(R"(case "$1 $2" in
-layout*) echo "torn" ;;
"-enc UTF-8") test "$3" = "/manuals/P 1.PDF" && printf 'Power on  50 57 31 0D\nPower off 50 57 30 0D\n\f' ;;
esac
)");
  Open();
  ASSERT_TRUE(Soon([this] { return !Text().toPlainText().isEmpty(); }));
  EXPECT_EQ(Text().toPlainText(), QStringLiteral("Power on  50 57 31 0D\nPower off 50 57 30 0D"));
  EXPECT_EQ(Hex(1), QStringLiteral("50 57 31 0D"));
}

TEST_F(FromPdf, OfALongManualThePagesWithCommandsAreKept) {
  InstallProgram(R"(i=0
while [ $i -lt 40 ]; do
  test $i = 20 && printf 'Power on  50 57 31 0D\nPower off 50 57 30 0D\n'
  printf 'The lamp gets hot.\n\f'
  i=$((i + 1))
done
)");
  Open();
  ASSERT_TRUE(Soon([this] { return !Text().toPlainText().isEmpty(); }));
  EXPECT_LT(Text().toPlainText().count(QStringLiteral("lamp")), 3);
  EXPECT_EQ(Hex(1), QStringLiteral("50 57 31 0D"));
}

TEST_F(FromPdf, WhatGoesWrongIsTold) {
  const auto told = [this](const std::string& words) {
    Open();
    const bool shown = Soon([this] { return !prompts_.Shown.empty(); });
    EXPECT_TRUE(shown && prompts_.LastText().find(words) != std::string::npos) << prompts_.LastText();
    prompts_.Shown.clear();
    EXPECT_TRUE(Text().toPlainText().isEmpty());
  };
  told("Ctrl+V");
  InstallProgram("echo 'Incorrect password' >&2; exit 1\n");
  told("Incorrect password");
  InstallProgram("printf '\\f\\f'\n");
  told("scanned");
  InstallProgram("while :; do :; done\n");
  form_.SetTimeLimit(std::chrono::milliseconds(20));
  told("too long");
}
#endif

}  // namespace
}  // namespace qdm
