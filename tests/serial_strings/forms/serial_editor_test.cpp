#include "serial_strings/forms/serial_editor.h"

#include "app/globals.h"
#include "controls/integer_entry.h"
#include "serial_strings/forms/byte_mode_form.h"
#include "serial_strings/forms/byte_value_control.h"
#include "serial_strings/forms/form_controlcode_form.h"
#include "serial_strings/forms/my_text_box.h"
#include "serial_strings/forms/volume_editor_form.h"
#include "support/fake_prompts.h"
#include "support/forms_events.h"
#include "support/strings.h"

#include <QClipboard>
#include <QCursor>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

#include <memory>

namespace qdm {
namespace {

using enum ByteKind;

class SerialEditorTest : public testing::Test {
 protected:
  Globals Shared;
  FakePrompts Prompts;
  std::function<void(QWidget*)> Console = [](QWidget*) { ADD_FAILURE() << "nobody asked for the console"; };
  std::unique_ptr<SerialEditor> Editor;

  SerialEditorTest() { QGuiApplication::clipboard()->clear(); }

  void Open(int slot, const SerialString& string) {
    Shared.CurrentSlot = static_cast<std::int16_t>(slot);
    Slot() = string;
    Editor = std::make_unique<SerialEditor>(Shared, Prompts, [this](QWidget* parent) { Console(parent); });
    Editor->show();
    Activate();
  }
  void Activate() {
    Editor->activateWindow();
    QCoreApplication::processEvents();
  }

  SerialString& Slot() {
    return Shared.CurrentProjector.Strings[static_cast<std::size_t>(Shared.CurrentSlot)];
  }
  ByteValueControl* Cell(int index) {
    return Editor->findChild<ByteValueControl*>(QStringLiteral("ByteValueControl1_%1").arg(index));
  }
  QLabel* Text2(int index) { return Cell(index)->findChild<QLabel*>(QStringLiteral("Text2")); }
  void Key(int cell, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    Activate();
    Cell(cell)->setFocus();
    QTest::keyClick(Cell(cell)->Box(), key, modifiers);
  }
  void Type(int cell, const char* keys) {
    Cell(cell)->setFocus();
    QTest::keyClicks(Cell(cell)->Box(), QLatin1String(keys));
  }
  void SetCount(const char* digits) {
    auto* text = Editor->findChild<IntegerEntry*>(QStringLiteral("NumberOfBytes1"))->findChild<QLineEdit*>();
    text->setFocus();
    text->selectAll();
    QTest::keyClicks(text, QLatin1String(digits));
    QTest::keyClick(text, Qt::Key_Return);
  }
  void Press(const char* button) {
    QTest::mouseClick(Editor->findChild<QPushButton*>(QLatin1String(button)), Qt::LeftButton);
  }
  void ChooseKind(int cell, const std::function<void(ByteModeForm&)>& actions) {
    WithOpened<ByteModeForm>([&] { Key(cell, Qt::Key_F4); }, actions);
  }
  static QLabel* Caption(ChoicePopup& popup, ByteKind kind) {
    return popup.findChild<QLabel*>(QStringLiteral("Label1_%1").arg(static_cast<int>(kind)));
  }
};

TEST_F(SerialEditorTest, ByteCountEnablesTheCellsBelowIt) {
  Open(1, Characters("ABC"));
  const auto enabled = [this] {
    int count = 0;
    while (count < 32 && Cell(count)->isEnabled()) ++count;
    for (int i = count; i < 32; ++i) EXPECT_FALSE(Cell(i)->isEnabled()) << i;
    return count;
  };
  EXPECT_EQ(enabled(), 3);
  SetCount("5");
  EXPECT_EQ(enabled(), 5);
  SetCount("99");
  EXPECT_EQ(enabled(), 32);
  SetCount("0");
  EXPECT_EQ(enabled(), 0);

  Press("Done");
  EXPECT_EQ(Slot().Count, 0);
  EXPECT_EQ(Slot().Values[2], 'C') << "the values stay";
}

TEST_F(SerialEditorTest, TypedBytesAreStoredOnDoneAndDroppedOnCancel) {
  const SerialString before = String({{'A'}, {0, HEX}, {0, DEC}, {0, BIN}});
  Open(1, before);
  QKeyEvent accented(QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("\u00E9"));
  QCoreApplication::sendEvent(Cell(0)->Box(), &accented);
  EXPECT_EQ(Cell(0)->Value(), 0xE9);
  Type(1, "1g0d");
  Type(2, "205");
  Type(3, "101");
  EXPECT_EQ(Cell(1)->Value(), 0x10) << "a full box takes no more digits";
  Key(1, Qt::Key_Backspace);
  Type(1, "d");
  Press("CancelCommand");
  EXPECT_EQ(Slot(), before);

  Open(1, before);
  Type(0, "P");
  Type(1, "1d");
  Type(2, "205");
  Type(3, "101");
  Press("Done");
  EXPECT_EQ(Slot(), String({{'P'}, {0x1D, HEX}, {205, DEC}, {5, BIN}}));
  EXPECT_FALSE(Editor->isVisible());
}

TEST_F(SerialEditorTest, ArrowsAndTabMoveBetweenTheCells) {
  Open(1, Characters("0123456789"));
  const auto focused = [this] {
    for (int i = 0; i < 32; ++i) {
      if (Cell(i)->Box()->hasFocus()) return i;
    }
    return -1;
  };
  EXPECT_EQ(focused(), 0);
  Key(0, Qt::Key_Right);
  EXPECT_EQ(focused(), 1);
  Key(1, Qt::Key_Down);
  EXPECT_EQ(focused(), 9);
  Key(9, Qt::Key_Right);
  EXPECT_EQ(focused(), 9) << "byte 11 is not in use";
  Key(9, Qt::Key_Up);
  EXPECT_EQ(focused(), 1);
  Key(1, Qt::Key_Tab);
  EXPECT_EQ(focused(), 2);
  Editor->FocusByte(20);
  EXPECT_EQ(focused(), 0);

  Open(1, String({{0x25, HEX}, {'A'}}));
  Key(0, Qt::Key_Left);
  Type(0, "");
  Key(0, Qt::Key_Backspace);
  EXPECT_EQ(Cell(0)->Value(), 5) << "in digits an arrow moves the caret first";
  Key(0, Qt::Key_End);
  Key(0, Qt::Key_Right);
  EXPECT_EQ(focused(), 1);
}

TEST_F(SerialEditorTest, KindIsChosenByMouseOrKeysAndLeavesTheValue) {
  Open(10, Characters("AB"));
  WithOpened<ByteModeForm>([this] { QTest::mouseClick(Text2(0), Qt::LeftButton); },
                           [](ByteModeForm& form) {
                             const QColor text = Caption(form, DEC)->palette().color(QPalette::WindowText);
                             QTest::mouseMove(Caption(form, DEC));
                             QCoreApplication::processEvents();
                             EXPECT_EQ(Caption(form, DEC)->palette().color(QPalette::Window), text);
                             QTest::mouseClick(Caption(form, DEC), Qt::LeftButton);
                           });
  EXPECT_EQ(Cell(0)->Kind(), static_cast<std::uint8_t>(DEC));
  EXPECT_EQ(Cell(0)->Box()->Text().Text(), "65");
  EXPECT_EQ(Text2(0)->text(), QStringLiteral("DEC"));

  ChooseKind(1, [](ByteModeForm& form) {
    for (int i = 0; i < 3; ++i) QTest::keyClick(&form, Qt::Key_Down);
    QTest::keyClick(&form, Qt::Key_Return);
  });
  EXPECT_EQ(Cell(1)->Kind(), static_cast<std::uint8_t>(BIN));
  ChooseKind(1, [](ByteModeForm& form) {
    QTest::keyClick(&form, Qt::Key_I);
    QTest::keyClick(&form, Qt::Key_Space);
  });
  EXPECT_EQ(Cell(1)->Box()->Text().Text(), "Ignore");
}

TEST_F(SerialEditorTest, PopUpIsLeftWithoutAChoice) {
  Open(10, Characters("AB"));
  ChooseKind(0, [](ByteModeForm& form) {
    QTest::keyClick(&form, Qt::Key_Down);
    QTest::keyClick(&form, Qt::Key_Escape);
  });
  ChooseKind(0, [](ByteModeForm& form) {
    QCursor::setPos(form.mapToGlobal(QPoint(-100, 400)));
    form.Timer1_Timer();
    EXPECT_TRUE(form.isVisible()) << "the pointer has not been there yet";
    QTest::mouseMove(Caption(form, BIN));
    QCoreApplication::processEvents();
    form.Timer1_Timer();
    EXPECT_TRUE(form.isVisible());
    QCursor::setPos(form.mapToGlobal(QPoint(-100, 400)));
    form.Timer1_Timer();
    EXPECT_FALSE(form.isVisible());
  });
  EXPECT_EQ(Cell(0)->Kind(), static_cast<std::uint8_t>(ASC));
}

TEST_F(SerialEditorTest, RightButtonOnAsciiSetsAllBytes) {
  SerialString string = String({{65, HEX}, {66, DEC}, {67, BIN}});
  string.Kinds[3] = static_cast<std::uint8_t>(HEX);  // not in use
  Open(1, string);
  ChooseKind(1, [](ByteModeForm& form) { QTest::mouseClick(Caption(form, ASC), Qt::RightButton); });
  Press("Done");
  EXPECT_EQ(CompactText(Slot()), "ABC");
  EXPECT_EQ(Slot().Kinds[3], static_cast<std::uint8_t>(HEX));
}

TEST_F(SerialEditorTest, ControlCodeIsChosenByItsName) {
  Open(1, String({{65, CNT}}));
  EXPECT_TRUE(Cell(0)->Box()->Text().Error());
  Type(0, "7");
  EXPECT_EQ(Cell(0)->Value(), 65) << "never typed";
  WithOpened<FormControlcodeForm>([this] { QTest::mouseClick(Cell(0)->Box(), Qt::LeftButton); },
                                  [](FormControlcodeForm& form) {
                                    QTest::mouseClick(form.findChild<QLabel*>(QStringLiteral("Label1_13")),
                                                      Qt::LeftButton);
                                  });
  EXPECT_EQ(Cell(0)->Value(), 13);
  WithOpened<FormControlcodeForm>([this] { Key(0, Qt::Key_Space); },
                                  [](FormControlcodeForm& form) {
                                    QTest::keyClick(&form, Qt::Key_Right);  // DC..: the next column
                                    QTest::keyClick(&form, Qt::Key_Return);
                                  });
  EXPECT_EQ(Cell(0)->Box()->Text().Text(), "NAK");
}

TEST_F(SerialEditorTest, VariableByteIsFoundWhereverItStands) {
  SerialString string = Characters("VOL");
  string.Kinds[30] = static_cast<std::uint8_t>(VAR);
  Open(6, string);
  EXPECT_EQ(Shared.VariableBytePosition, 31) << "whatever the byte count";

  const auto choose = [](ByteModeForm& form) { QTest::mouseClick(Caption(form, VAR), Qt::LeftButton); };
  bool volumeFormShown = false;
  QTimer closer;
  QObject::connect(&closer, &QTimer::timeout, &closer, [&] {
    if (auto* form = qobject_cast<VolumeEditorForm*>(OpenWindow())) {
      volumeFormShown = true;
      form->close();
    }
  });
  closer.start(0);
  ChooseKind(1, choose);
  EXPECT_TRUE(volumeFormShown);
  EXPECT_EQ(Shared.VariableBytePosition, 2) << "the one that is not in use gives way";

  ChooseKind(2, choose);
  EXPECT_EQ(Cell(2)->Kind(), static_cast<std::uint8_t>(ASC)) << "one variable byte at most";

  volumeFormShown = false;
  QTest::mouseClick(Cell(1)->Box(), Qt::LeftButton);
  EXPECT_TRUE(volumeFormShown);
  ChooseKind(1, [](ByteModeForm& form) {
    QTest::keyClick(&form, Qt::Key_Up);
    QTest::keyClick(&form, Qt::Key_Return);
  });
  EXPECT_EQ(Shared.VariableBytePosition, 0);
}

TEST_F(SerialEditorTest, CommandsHaveNoIgnoredBytes) {
  Open(9, Characters("A"));
  ChooseKind(0, [](ByteModeForm& form) { QTest::mouseClick(Caption(form, IGN), Qt::LeftButton); });
  EXPECT_EQ(Cell(0)->Kind(), static_cast<std::uint8_t>(ASC));
  Open(22, Characters("A"));
  ChooseKind(0, [](ByteModeForm& form) { QTest::mouseClick(Caption(form, IGN), Qt::LeftButton); });
  EXPECT_EQ(Cell(0)->Kind(), static_cast<std::uint8_t>(IGN));
}

TEST_F(SerialEditorTest, ValueThatIsNoByteIsKeptFlaggedAndNotStored) {
  const SerialString before = String({{'A'}, {30, DEC}});
  Open(1, before);
  Key(1, Qt::Key_End);
  Type(1, "0");
  EXPECT_EQ(Cell(1)->Value(), 300);
  EXPECT_TRUE(Cell(1)->Box()->Text().Error());
  const auto* note = Editor->findChild<QLabel*>(QStringLiteral("ErrorNote"));
  EXPECT_EQ(note->text(), QStringLiteral("Byte 2 is 300: a byte holds 0 to 255."));

  Cell(0)->setFocus();
  Press("Done");
  Press("Test");
  EXPECT_TRUE(Editor->isVisible());
  EXPECT_TRUE(Cell(1)->Box()->hasFocus());
  EXPECT_EQ(Slot(), before);

  SetCount("1");
  EXPECT_EQ(note->text(), QString());
  Press("Done");
  EXPECT_EQ(Slot().Values[1], 30) << "behind the string's end the stored byte stays";
}

TEST_F(SerialEditorTest, TestShowsTheConsoleTheEditedBytesAndPutsTheSlotBack) {
  const SerialString before = Characters("AB");
  Open(1, before);
  Type(0, "X");
  SerialString tested;
  Console = [&](QWidget*) {
    tested = Slot();
    Slot() = Characters("changed");
  };
  Press("Test");
  EXPECT_EQ(tested, Characters("XB"));
  EXPECT_EQ(Slot(), before);
  Press("CancelCommand");
  EXPECT_EQ(Slot(), before);
}

TEST_F(SerialEditorTest, PastesFromTheFocusedByteOnOrTheWholeString) {
  Open(1, Characters("0123"));
  QGuiApplication::clipboard()->setText(QStringLiteral("ABC"));
  Key(2, Qt::Key_V, Qt::ControlModifier);
  Press("Done");
  EXPECT_EQ(Slot(), Characters("01ABC"));

  Open(1, Characters("0123456789"));
  Press("PasteCommand");
  Press("Done");
  EXPECT_EQ(CompactText(Slot()), "ABC");

  Open(1, Characters("01234567890123456789012345678901"));
  Key(30, Qt::Key_V, Qt::ControlModifier);
  EXPECT_THAT(Prompts.LastText(), testing::HasSubstr("more than 32 bytes"));
  EXPECT_EQ(Cell(30)->Value(), '0');
}

}  // namespace
}  // namespace qdm
