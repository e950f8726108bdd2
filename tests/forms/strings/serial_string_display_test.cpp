#include "forms/strings/serial_string_display.h"

#include "forms/shared/globals.h"
#include "forms/strings/string_picture.h"
#include "forms/strings/text_reading_form.h"
#include "support/fake_prompts.h"
#include "support/forms_events.h"
#include "support/strings.h"

#include <QClipboard>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

#include <gmock/gmock.h>

namespace qdm {
namespace {

using enum ByteKind;

class SerialStringDisplayTest : public testing::Test {
 protected:
  Globals Shared;
  FakePrompts Prompts;
  QWidget Window;
  SerialStringDisplay Control{&Window};
  StringPicture* DisplayImage = Control.findChild<StringPicture*>(QStringLiteral("DisplayImage"));
  QSignalSpy EditRequest{&Control, &SerialStringDisplay::EditRequest};
  QSignalSpy StringChanged{&Control, &SerialStringDisplay::StringChanged};

  const SerialString PowerOn = String({{'P'}, {'W'}, {'R'}, {13, CNT}});
  const SerialString Reply = String({{'O'}, {'K'}, {0, IGN}});

  SerialStringDisplayTest() {
    QGuiApplication::clipboard()->clear();
    Window.resize(400, 100);
    Control.setGeometry(10, 10, 160, 34);
    Control.Bind(Shared, Prompts);
    Window.show();
    Window.activateWindow();
    Control.setFocus();
    QCoreApplication::processEvents();
  }

  SerialString& Slot(int slot) { return Shared.CurrentProjector.Strings[static_cast<std::size_t>(slot)]; }
  void Show(int slot, const SerialString& string) {
    Slot(slot) = string;
    Control.Display(slot);
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    Window.activateWindow();  // a pop-up that was closed leaves no window active without a screen
    Control.setFocus();
    QCoreApplication::processEvents();
    QTest::keyClick(&Control, key, modifiers);
  }
};

TEST_F(SerialStringDisplayTest, EditRequestNamesTheByteThatWasDoubleClicked) {
  Show(1, PowerOn);
  int onThirdByte = 0;
  while (DisplayImage->ByteAt(onThirdByte) != 2) ++onThirdByte;
  const QPoint place(onThirdByte, 5);
  QTest::mouseClick(DisplayImage, Qt::LeftButton, {}, place);
  QTest::mouseDClick(DisplayImage, Qt::LeftButton, {}, place);
  QTest::mouseRelease(DisplayImage, Qt::LeftButton, {}, place);
  EXPECT_EQ(EditRequest.count(), 1);
  EXPECT_EQ(Control.RequestedByte(), 2);
}

TEST_F(SerialStringDisplayTest, CutAndPasteMoveAStringDeleteLeavesTheClipboard) {
  Show(1, PowerOn);
  Key(Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(Slot(1).Count, 0);
  EXPECT_EQ(Slot(1).Values, PowerOn.Values) << "only the count is cleared";
  Control.Display(8);
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Slot(8), PowerOn);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Slot(8).Count, 0);
  EXPECT_EQ(Shared.ClipboardString, PowerOn);
  EXPECT_EQ(StringChanged.count(), 3);
}

TEST_F(SerialStringDisplayTest, IgnoredBytesArePastedIntoRepliesOnly) {
  Show(10, Reply);
  Key(Qt::Key_C, Qt::ControlModifier);
  Show(9, PowerOn);
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Slot(9), PowerOn);
  EXPECT_EQ(Prompts.LastText(), "Sorry cannot paste here as serial string conatins an 'ignore' byte!");

  Control.Display(24);
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Slot(24), Reply);
}

TEST_F(SerialStringDisplayTest, TextFromElsewhereIsReadAndShownBeforeItIsTaken) {
  Control.Display(1);
  QGuiApplication::clipboard()->setText(QStringLiteral("POWER"));
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Slot(1), Characters("POWER")) << "one reading only: taken at once";

  QGuiApplication::clipboard()->setText(QStringLiteral("10 20"));
  const auto paste = [&] { Key(Qt::Key_V, Qt::ControlModifier); };
  WithOpened<TextReadingForm>(paste, [](TextReadingForm& form) { QTest::keyClick(&form, Qt::Key_Escape); });
  EXPECT_EQ(Slot(1), Characters("POWER"));
  WithOpened<TextReadingForm>(paste, [](TextReadingForm& form) {
    auto* readings = form.findChild<QTreeWidget*>(QStringLiteral("Readings"));
    QTest::keyClick(readings, Qt::Key_Down);
    EXPECT_EQ(readings->currentItem()->text(1), QStringLiteral("0A 14"));
    QTest::keyClick(readings, Qt::Key_Return);
  });
  EXPECT_EQ(Slot(1), String({{10, DEC}, {20, DEC}}));

  QGuiApplication::clipboard()->setText(QStringLiteral("VOL\u00a0XX<CR>"));
  WithOpened<TextReadingForm>(paste, [](TextReadingForm& form) {
    EXPECT_THAT(form.findChild<QLabel*>(QStringLiteral("Notes"))->text().toStdString(),
                testing::HasSubstr("a no-break space became a blank"));
    QTest::keyClick(&form, Qt::Key_Return);
  });
  EXPECT_EQ(Slot(1), String({{10, DEC}, {20, DEC}})) << "Enter takes no placeholder";

  QGuiApplication::clipboard()->setText(QStringLiteral("A line of more than thirty-two bytes"));
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_THAT(Prompts.LastText(), testing::HasSubstr("Character 33: more than 32 bytes."));
}

}  // namespace
}  // namespace qdm
