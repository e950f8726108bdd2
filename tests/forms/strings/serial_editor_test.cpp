#include "forms/strings/serial_editor.h"

#include "forms/controls/integer_entry.h"
#include "forms/shared/globals.h"
#include "forms/strings/byte_mode_form.h"
#include "forms/strings/byte_value_control.h"
#include "forms/strings/form_controlcode_form.h"
#include "forms/strings/my_text_box.h"
#include "forms/strings/volume_editor_form.h"
#include "serial_strings/serial_string.h"
#include "support/fake_prompts.h"
#include "support/forms_events.h"
#include "support/strings.h"

#include <QAccessible>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

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
    Editor.reset();
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
  void Key(int cell, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    Activate();
    Cell(cell)->Box()->setFocus();
    QTest::keyClick(Cell(cell)->Box(), key, modifiers);
  }
  void Type(int cell, const char* keys) {
    Cell(cell)->Box()->setFocus();
    QTest::keyClicks(Cell(cell)->Box(), QLatin1String(keys));
  }
  QLineEdit* Line() { return Editor->findChild<QLineEdit*>(QStringLiteral("Command")); }
  std::string Text(const char* label) {
    return Editor->findChild<QLabel*>(QLatin1String(label))->text().toStdString();
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

TEST_F(SerialEditorTest, TypedBytesAreTestedStoredOnDoneAndDroppedOnCancel) {
  const SerialString before = String({{'A'}, {0, HEX}, {0, DEC}, {0, BIN}});
  Shared.UnstoredProjector = [this] { return std::optional(Shared.CurrentProjector); };
  for (const bool done : {false, true}) {
    Open(1, before);
    Type(0, "P");
    Type(1, "1g0d");
    Key(1, Qt::Key_Backspace);
    Type(1, "d");
    Type(2, "205");
    Type(3, "101");
    const SerialString typed = String({{'P'}, {0x1D, HEX}, {205, DEC}, {5, BIN}});
    EXPECT_EQ(Shared.UnstoredProjector()->Strings[1], typed) << "kept when the program ends";
    EXPECT_EQ(Slot(), before);
    SerialString tested;
    Console = [&](QWidget*) { tested = std::exchange(Slot(), Characters("changed")); };
    Press("Test");
    EXPECT_EQ(tested, typed);
    EXPECT_EQ(Slot(), before) << "the console leaves nothing behind";
    Press(done ? "Done" : "CancelCommand");
    EXPECT_EQ(Slot(), done ? typed : before);
    EXPECT_FALSE(Editor->isVisible());
  }
}

TEST_F(SerialEditorTest, KindIsChosenByMouseOrKeysAndLeavesTheValue) {
  Open(9, Characters("AB"));  // a command
  ChooseKind(0, [](ByteModeForm& form) { QTest::mouseClick(Caption(form, DEC), Qt::LeftButton); });
  EXPECT_EQ(Cell(0)->Box()->Text().Text(), "65");
  ChooseKind(1, [](ByteModeForm& form) {
    for (int i = 0; i < 3; ++i) QTest::keyClick(&form, Qt::Key_Down);
    QTest::keyClick(&form, Qt::Key_Return);
  });
  EXPECT_EQ(Cell(1)->Kind(), static_cast<std::uint8_t>(BIN));
  ChooseKind(1, [](ByteModeForm& form) { QTest::mouseClick(Caption(form, IGN), Qt::LeftButton); });
  EXPECT_EQ(Cell(1)->Kind(), static_cast<std::uint8_t>(BIN)) << "replies alone have ignored bytes";

  Open(10, String({{65, CNT}}));  // a reply
  Type(0, "7");                   // does nothing: codes are never typed
  WithOpened<FormControlcodeForm>([this] { Key(0, Qt::Key_Space); },
                                  [](FormControlcodeForm& form) {
                                    QTest::mouseClick(form.findChild<QLabel*>(QStringLiteral("Label1_13")),
                                                      Qt::LeftButton);
                                  });
  EXPECT_EQ(Cell(0)->Value(), 13);
  ChooseKind(0, [](ByteModeForm& form) { QTest::mouseClick(Caption(form, IGN), Qt::LeftButton); });
  EXPECT_EQ(Cell(0)->Kind(), static_cast<std::uint8_t>(IGN));
}

TEST_F(SerialEditorTest, RightButtonOnAsciiSetsAllBytesAndTextIsPastedFromTheFocusedByteOn) {
  SerialString string = String({{65, HEX}, {66, DEC}, {67, BIN}});
  string.Kinds[3] = static_cast<std::uint8_t>(HEX);  // not in use
  Open(1, string);
  ChooseKind(1, [](ByteModeForm& form) { QTest::mouseClick(Caption(form, ASC), Qt::RightButton); });
  QGuiApplication::clipboard()->setText(QStringLiteral("XY"));
  Key(1, Qt::Key_V, Qt::ControlModifier);
  Press("Done");
  EXPECT_EQ(CompactText(Slot()), "AXY");
  EXPECT_EQ(Slot().Kinds[3], static_cast<std::uint8_t>(HEX));
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
}

TEST_F(SerialEditorTest, ValueThatIsNoByteIsKeptFlaggedAndNotStored) {
  const SerialString before = String({{'A'}, {30, DEC}});
  Open(1, before);
  Key(1, Qt::Key_End);
  Type(1, "0");
  EXPECT_EQ(Cell(1)->Value(), 300);
  const auto* note = Editor->findChild<QLabel*>(QStringLiteral("ErrorNote"));
  EXPECT_EQ(note->text(), QStringLiteral("Byte 2 is 300: a byte holds 0 to 255."));

  Cell(0)->Box()->setFocus();
  Press("Done");
  Press("Test");
  EXPECT_TRUE(Editor->isVisible());
  EXPECT_TRUE(Cell(1)->Box()->hasFocus());
  EXPECT_EQ(Slot(), before);

  SetCount("1");
  EXPECT_EQ(note->text(), QString());
  for (int i = 0; i < 32; ++i) EXPECT_EQ(Cell(i)->isEnabled(), i < 1) << i;
  Press("Done");
  EXPECT_EQ(Slot().Values[1], 30) << "behind the string's end the stored byte stays";
}

TEST_F(SerialEditorTest, TabGoesThroughCountTextBytesAndButtons) {
  Open(1, Characters("AB"));
  QStringList visited;
  SetCount("2");
  do {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    visited << QApplication::focusWidget()->objectName();
  } while (visited.last() != QStringLiteral("Text1") && visited.size() < 50);
  EXPECT_EQ(visited.join(u' ').toStdString(),
            "Command MyTextBox1 MyTextBox1 Test PasteCommand Done CancelCommand Text1");
}

TEST_F(SerialEditorTest, CommandIsReadWhileItIsTypedAndIsOneStep) {
  Open(1, {});
  ASSERT_TRUE(Line()->hasFocus()) << "an empty string begins here";
  QTest::keyClicks(Line(), QStringLiteral("ON<CR>"));
  EXPECT_EQ(Cell(2)->Value(), 13);
  EXPECT_TRUE(Cell(2)->isEnabled() && !Cell(3)->isEnabled());
  QTest::keyClick(Line(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Line()->text(), QString());
  EXPECT_FALSE(Cell(0)->isEnabled());
  QTest::keyClick(Line(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Line()->text(), QStringLiteral("ON<CR>"));

  Key(0, Qt::Key_F);
  EXPECT_EQ(Line()->text(), QStringLiteral("fN<CR>")) << "follows the bytes";
  Line()->setFocus();
  Line()->selectAll();
  QTest::keyClicks(Line(), QStringLiteral("02 50"));
  EXPECT_EQ(Cell(1)->Value(), 0x50);
  EXPECT_THAT(Text("CommandNote"), testing::HasSubstr("bytes in decimal"));
  Line()->setText(QString(32, u'A'));
  QTest::keyClicks(Line(), QStringLiteral("B"));
  EXPECT_EQ(Cell(1)->Value(), 0x50) << "what cannot be read leaves the bytes alone";
  Press("Done");
  EXPECT_TRUE(Editor->isVisible() && Line()->hasFocus());
  EXPECT_EQ(Slot(), SerialString{});
}

TEST_F(SerialEditorTest, BytesAreInsertedRemovedAndHadBack) {
  const SerialString before = Characters("ABC");
  Open(1, before);
  Key(1, Qt::Key_Insert, Qt::ControlModifier);
  Type(1, "x");
  Key(0, Qt::Key_Delete, Qt::ControlModifier);
  EXPECT_EQ(Line()->text(), QStringLiteral("xBC"));
  Press("PasteCommand");
  EXPECT_EQ(Line()->text(), QString()) << "nothing was copied yet";
  Activate();
  const auto* undo = Editor->findChild<QToolButton*>(QStringLiteral("Undo"));
  EXPECT_EQ(undo->toolTip(), QStringLiteral("Undo: Paste (Ctrl+Z)"));
  for (int i = 0; i < 4; ++i) QTest::keyClick(Editor.get(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_FALSE(undo->isEnabled());
  Press("Done");
  EXPECT_EQ(Slot(), before);
}

TEST_F(SerialEditorTest, ScreenReadersHearValuesAndPopUps) {
  Open(1, String({{'A'}, {13, CNT}}));
  EXPECT_EQ(Cell(1)->Box()->accessibleName(), QStringLiteral("Byte 2, CNT: CR"));
  EXPECT_EQ(Editor->findChild<QWidget*>(QStringLiteral("Preview"))->accessibleName(),
            QStringLiteral("A,CRc"));
  ChooseKind(1, [this](ByteModeForm& form) {
    QAccessibleInterface* editor = QAccessible::queryAccessibleInterface(Editor.get());
    QAccessibleInterface* popup = editor->child(editor->childCount() - 1);
    ASSERT_EQ(popup->object(), &form);
    EXPECT_EQ(popup->child(4)->text(QAccessible::Name), QStringLiteral("CONTROL"));
    EXPECT_TRUE(popup->child(4)->state().focused && !popup->child(3)->state().focused);
  });
}

}  // namespace
}  // namespace qdm
