#include "serial_strings/forms/serial_string_display.h"

#include "app/globals.h"
#include "serial_strings/forms/string_picture.h"
#include "serial_strings/forms/text_reading_form.h"
#include "support/fake_prompts.h"
#include "support/forms_events.h"
#include "support/strings.h"

#include <QClipboard>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace qdm {
namespace {

using enum ByteKind;

class SerialStringDisplayTest : public testing::Test {
 protected:
  static constexpr int kWidth = 160;

  Globals Shared;
  FakePrompts Prompts;
  QWidget Window;
  SerialStringDisplay Control{&Window};
  StringPicture* DisplayImage = Control.findChild<StringPicture*>(QStringLiteral("DisplayImage"));
  QScrollBar* OffsetBar = Control.findChild<QScrollBar*>(QStringLiteral("OffsetBar"));
  QMenu* menuHidden = Control.findChild<QMenu*>(QStringLiteral("menuHidden"));
  QSignalSpy EditRequest{&Control, &SerialStringDisplay::EditRequest};
  QSignalSpy StringChanged{&Control, &SerialStringDisplay::StringChanged};
  QSignalSpy TestRequest{&Control, &SerialStringDisplay::TestRequest};

  const SerialString PowerOn = String({{'P'}, {'W'}, {'R'}, {13, CNT}});
  const SerialString Reply = String({{'O'}, {'K'}, {0, IGN}});

  SerialStringDisplayTest() {
    QGuiApplication::clipboard()->clear();
    Window.resize(400, 100);
    Control.setGeometry(10, 10, kWidth, 34);
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

TEST_F(SerialStringDisplayTest, DrawsEveryKindInItsColourAtItsPlace) {
  const SerialString all = String({{'P'}, {2, HEX}, {50, DEC}, {5, BIN}, {13, CNT}, {0, VAR}, {0, IGN}});
  Show(10, all);
  Control.resize(600, 34);
  Window.resize(640, 100);
  const QImage image = DisplayImage->grab().toImage();

  std::vector<int> seen;
  int before = -1;
  for (int x = 0; x < image.width(); ++x) {
    const int byte = DisplayImage->ByteAt(x);
    if (byte >= 0 && byte != before) seen.push_back(byte);
    before = byte;
    if (byte < 0) continue;
    for (int y = 3; y < image.height() - 3; ++y) {
      const QColor pixel = image.pixelColor(x, y);
      const QColor kind(static_cast<QRgb>(KindColour(all.Kinds[static_cast<std::size_t>(byte)])));
      // Between the background and the colour of its kind: no other colour is used there.
      const auto between = [](int part, int end) { return part >= std::min(255, end) - 1; };
      EXPECT_TRUE(between(pixel.red(), kind.red()) && between(pixel.green(), kind.green()) &&
                  between(pixel.blue(), kind.blue()))
          << "byte " << byte << ": " << pixel.name().toStdString();
    }
  }
  EXPECT_THAT(seen, testing::ElementsAre(0, 1, 2, 3, 4, 5, 6));
  EXPECT_EQ(DisplayImage->ByteAt(0), -1);
  EXPECT_EQ(DisplayImage->ByteAt(599), -1);
}

TEST_F(SerialStringDisplayTest, OffsetBarComesWithTextThatDoesNotFit) {
  Show(1, PowerOn);
  EXPECT_TRUE(OffsetBar->isHidden());

  Show(1, Characters("32 characters are too much here."));
  ASSERT_FALSE(OffsetBar->isHidden());
  const int maximum = (DisplayImage->TotalWidth() - kWidth) / 8 + 1;
  EXPECT_EQ(OffsetBar->maximum(), maximum);
  EXPECT_EQ(OffsetBar->pageStep(), std::max(1, maximum / 4));

  const int byte = DisplayImage->ByteAt(50);
  Key(Qt::Key_End);
  EXPECT_EQ(OffsetBar->value(), maximum);
  EXPECT_GT(DisplayImage->ByteAt(50), byte);
  EXPECT_EQ(DisplayImage->ByteAt(kWidth - 1), -1) << "the end of the text is in sight";

  Show(1, PowerOn);
  EXPECT_TRUE(OffsetBar->isHidden());
  EXPECT_EQ(DisplayImage->ByteAt(6), 0);
}

TEST_F(SerialStringDisplayTest, ReleaseAfterDoubleClickAsksForEditingOfThatByte) {
  Show(1, PowerOn);
  int onThirdByte = 0;
  while (DisplayImage->ByteAt(onThirdByte) != 2) ++onThirdByte;

  QTest::mouseClick(DisplayImage, Qt::LeftButton);
  EXPECT_EQ(EditRequest.count(), 0);
  const QPoint place(onThirdByte, 5);
  QTest::mousePress(DisplayImage, Qt::LeftButton, {}, place);
  QTest::mouseRelease(DisplayImage, Qt::LeftButton, {}, place);
  QMouseEvent second(QEvent::MouseButtonDblClick, place, DisplayImage->mapToGlobal(place), Qt::LeftButton,
                     Qt::LeftButton, {});
  QCoreApplication::sendEvent(DisplayImage, &second);
  EXPECT_EQ(EditRequest.count(), 0) << "not before the release";
  QTest::mouseRelease(DisplayImage, Qt::LeftButton, {}, place);
  EXPECT_EQ(EditRequest.count(), 1);
  EXPECT_EQ(Control.RequestedByte(), 2);
  EXPECT_EQ(DisplayImage->toolTip(), QStringLiteral("Double click to edit"));
}

TEST_F(SerialStringDisplayTest, RightButtonShowsTheMenuUnlessItIsDisabled) {
  Show(1, PowerOn);
  QStringList captions;
  for (const QAction* entry : menuHidden->actions()) {
    captions << (entry->isSeparator() ? QStringLiteral("-") : entry->text());
  }
  EXPECT_EQ(captions, QStringList({"&Edit", "-", "&Copy", "C&ut", "&Paste", "&Delete", "-", "&Test"}));

  WithOpened<QMenu>([&] { QTest::mouseClick(DisplayImage, Qt::RightButton); },
                    [](QMenu& menu) { QTest::keyClick(&menu, Qt::Key_T); });
  EXPECT_EQ(TestRequest.count(), 1);

  Control.DisableMenu();
  QTest::mouseClick(DisplayImage, Qt::RightButton);
  QCoreApplication::processEvents();
  EXPECT_EQ(OpenWindow(), nullptr);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Slot(1), PowerOn) << "what the menu would do, its keys do not do either";
  Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(Shared.ClipboardString, PowerOn);
}

TEST_F(SerialStringDisplayTest, KeysDoWhatTheMenuDoes) {
  Show(1, PowerOn);
  Key(Qt::Key_Return);
  EXPECT_EQ(EditRequest.count(), 1);
  EXPECT_EQ(Control.RequestedByte(), -1);
  Key(Qt::Key_F5);
  Key(Qt::Key_T, Qt::ControlModifier);
  EXPECT_EQ(TestRequest.count(), 2);
  EXPECT_EQ(StringChanged.count(), 0);
}

TEST_F(SerialStringDisplayTest, CutAndPasteMoveAStringDeleteLeavesTheClipboard) {
  Show(1, PowerOn);
  Key(Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(Slot(1).Count, 0);
  EXPECT_EQ(Slot(1).Values, PowerOn.Values) << "only the count is cleared";
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("PWR,CRc"));

  Control.Display(8);
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Slot(8), PowerOn);
  EXPECT_EQ(StringChanged.count(), 2);

  Key(Qt::Key_Delete);
  EXPECT_EQ(Slot(8).Count, 0);
  EXPECT_EQ(Control.String().Count, 0);
  EXPECT_EQ(Shared.ClipboardString, PowerOn);
  EXPECT_EQ(StringChanged.count(), 3);
}

TEST_F(SerialStringDisplayTest, IgnoredBytesArePastedIntoRepliesOnly) {
  Show(10, Reply);
  Key(Qt::Key_C, Qt::ControlModifier);
  Show(9, PowerOn);
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Slot(9), PowerOn);
  EXPECT_EQ(StringChanged.count(), 0);
  ASSERT_EQ(Prompts.Shown.size(), 1U);
  EXPECT_EQ(Prompts.Shown[0].Text, "Sorry cannot paste here as serial string conatins an 'ignore' byte!");
  EXPECT_EQ(Prompts.Shown[0].Title, "sorry!");

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
    EXPECT_EQ(readings->topLevelItem(0)->text(1), QStringLiteral("10 20"));
    QTest::keyClick(readings, Qt::Key_Down);
    EXPECT_EQ(readings->currentItem()->text(1), QStringLiteral("0A 14"));
    QTest::keyClick(readings, Qt::Key_Return);
  });
  EXPECT_EQ(Slot(1), String({{10, DEC}, {20, DEC}}));

  QGuiApplication::clipboard()->setText(QStringLiteral("A line of more than thirty-two bytes"));
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_THAT(Prompts.LastText(), testing::HasSubstr("Character 33: more than 32 bytes."));
  EXPECT_EQ(StringChanged.count(), 2);
}

TEST_F(SerialStringDisplayTest, ReceivedReplyIsShownAndReturnedOnRequest) {
  Shared.ReceivedReply = Reply;
  Show(11, PowerOn);
  Control.FillWithReceiveString();
  EXPECT_EQ(Control.String(), Reply);
  EXPECT_EQ(Slot(11), PowerOn);
  Control.ReturnValue();
  EXPECT_EQ(Slot(11), Reply);
}

}  // namespace
}  // namespace qdm
