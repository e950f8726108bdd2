#include "forms/controls/hex_entry.h"
#include "forms/controls/integer5v.h"
#include "forms/controls/integer_entry.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace qdm {
namespace {

// The entry in a window with a default button, as dialogs have them.
template <class Entry>
struct Form {
  QDialog Window;
  Entry Control{&Window};
  QPushButton Done{&Window};
  QLineEdit* Text1 = Control.template findChild<QLineEdit*>(QStringLiteral("Text1"));
  QToolButton* Up = Control.template findChild<QToolButton*>(QStringLiteral("Up"));
  QToolButton* Down = Control.template findChild<QToolButton*>(QStringLiteral("Down"));
  QTimer* Timer1 = Control.template findChild<QTimer*>(QStringLiteral("Timer1"));
  QSignalSpy Changed{&Control, &SpinEntry::Changed};
  QSignalSpy DonePressed{&Done, &QPushButton::clicked};

  Form() {
    auto* column = new QVBoxLayout(&Window);
    column->addWidget(&Control);
    column->addWidget(&Done);
    Done.setDefault(true);
    Window.show();
    Window.activateWindow();
    Text1->setFocus();
    QCoreApplication::processEvents();
  }

  void Type(const char* text) {
    Text1->selectAll();
    QTest::keyClicks(Text1, QLatin1String(text));
  }
  void Enter(const char* text) {
    Type(text);
    QTest::keyClick(Text1, Qt::Key_Return);
  }

  // What the control's timer does in that time.
  void Pass(int milliseconds) {
    while (Timer1->isActive() && milliseconds >= Timer1->interval()) {
      milliseconds -= Timer1->interval();
      Control.Timer1_Timer();
    }
  }
  std::string Shown() const { return Text1->text().toStdString(); }
};

// What is entered into a control that shows 5.
struct Entered {
  const char* Typed;
  float Value;
  const char* Shown;
};

template <class Entry>
void ExpectEntered(const std::vector<Entered>& cases, const std::function<void(Entry&)>& limit) {
  for (const Entered& c : cases) {
    Form<Entry> form;
    limit(form.Control);
    form.Control.SetValue(5);
    form.Enter(c.Typed);
    EXPECT_EQ(static_cast<float>(form.Control.Value()), c.Value) << c.Typed;
    EXPECT_EQ(form.Shown(), c.Shown) << c.Typed;
    EXPECT_EQ(form.Changed.count(), 1) << c.Typed;
    EXPECT_EQ(form.DonePressed.count(), 0) << "Enter ends the number, not the dialog";
  }
}

TEST(SpinEntry, ReadsWhatIsEnteredWithinTheLimits) {
  ExpectEntered<IntegerEntry>({{"99999999999999999999999", 32767, "32767"}, {"-99999", -32768, "-32768"}},
                              [](IntegerEntry& entry) { entry.SetLimits(-32768, 32767); });
  ExpectEntered<IntegerEntry>(
      {{"0", 1, "1"}, {" 42 ", 42, "42"}, {"+7", 7, "7"}, {" ", 5, "5"}, {"12x", 5, "5"}},
      [](IntegerEntry& entry) { entry.SetLimits(1, 255); });
  ExpectEntered<HEXentry>({{"FFFF", -1, "FFFF"},
                           {"8000", -32768, "8000"},
                           {"&h1f", 31, "1F"},
                           {"10000", 32767, "7FFF"},
                           {"FFFFFFFF", -1, "FFFF"},
                           {"-1", 5, "5"}},
                          [](HEXentry&) {});
  ExpectEntered<Integer5V>(
      {{"1,5", 1.5F, "1.50"}, {"7", 4.75F, "4.75"}, {"nan", 5, "5.00"}, {"1.2.3", 5, "5.00"}},
      [](Integer5V&) {});
}

TEST(SpinEntry, BringsValuesFromOutsideWithinTheLimits) {
  Form<IntegerEntry> form;
  form.Control.Bind(300, 1, 255, QStringLiteral("Level"));
  EXPECT_EQ(form.Shown(), "255");
  EXPECT_EQ(form.Changed.count(), 0) << "only the user changes a value in the owner's eyes";
}

TEST(IntegerEntry, GivesTypedTextBeforeItIsEntered) {
  Form<IntegerEntry> form;
  form.Control.Bind(5, 1, 255, QStringLiteral("Screen rise time"));
  form.Type("300");
  EXPECT_EQ(form.Control.Value(), 255);
  EXPECT_EQ(form.Shown(), "300") << "nobody rewrites what is being typed";
  EXPECT_EQ(form.Changed.count(), 0);
  form.Type("50");
  QTest::mouseClick(form.Up, Qt::LeftButton);
  EXPECT_EQ(form.Control.Value(), 51);
}

TEST(SpinEntry, StepsAtOnceAfterASecondAndThenEveryTenth) {
  Form<IntegerEntry> form;
  form.Control.Bind(0, -10, 10, QStringLiteral("Level"));
  QTest::mousePress(form.Up, Qt::LeftButton);
  EXPECT_EQ(form.Control.Value(), 1);
  form.Pass(1350);
  EXPECT_EQ(form.Control.Value(), 5);
  EXPECT_EQ(form.Changed.count(), 0);
  QTest::mouseRelease(form.Up, Qt::LeftButton);
  EXPECT_FALSE(form.Timer1->isActive());
  EXPECT_EQ(form.Changed.count(), 1);

  QTest::mouseDClick(form.Up, Qt::LeftButton);  // how the second press of a quick hand arrives
  EXPECT_EQ(form.Control.Value(), 6);
  QTest::mousePress(form.Down, Qt::LeftButton);
  form.Pass(10000);
  EXPECT_EQ(form.Control.Value(), -10);
  form.Control.setEnabled(false);  // no mouse up will come
  EXPECT_FALSE(form.Timer1->isActive());
}

TEST(SpinEntry, EscapeRestoresTheTextBeforeItClosesTheWindow) {
  Form<IntegerEntry> form;
  QTest::keyClick(form.Text1, Qt::Key_PageUp);
  form.Type("7");
  QTest::keyClick(form.Text1, Qt::Key_Escape);
  EXPECT_EQ(form.Shown(), "10");
  EXPECT_EQ(form.Changed.count(), 1) << "of the step";
  EXPECT_TRUE(form.Window.isVisible());
  QTest::keyClick(form.Text1, Qt::Key_Escape);
  EXPECT_FALSE(form.Window.isVisible());
}

TEST(SpinEntry, LeavingItEntersTheText) {
  Form<IntegerEntry> form;
  form.Control.Bind(5, 1, 255, QStringLiteral("Level"));
  form.Type("300");
  QTest::keyClick(form.Text1, Qt::Key_Tab);
  EXPECT_EQ(form.Shown(), "255");
  EXPECT_EQ(form.Changed.count(), 1);
  const QPointer<QLabel> note = form.Window.findChild<QLabel*>(QStringLiteral("EntryNote"));
  ASSERT_TRUE(note && note->isVisible()) << "never corrected without a word";
  EXPECT_EQ(note->text(), QStringLiteral("Level: 1 to 255"));
  QTest::keyClick(&form.Done, Qt::Key_Shift);
  EXPECT_FALSE(note->isVisible()) << "until the next key";

  QObject::connect(&form.Control, &SpinEntry::Changed, &form.Window, [&form] { form.Done.setFocus(); });
  form.Text1->setFocus();
  form.Enter("3");
  EXPECT_EQ(form.Changed.count(), 2) << "once, although its owner took the focus away";
}

TEST(SpinEntry, TellsNobodyWhenItsWindowGoes) {
  int changes = 0;
  {
    auto window = std::make_unique<QDialog>();
    auto* entry = new IntegerEntry(window.get());
    QObject::connect(entry, &SpinEntry::Changed, entry, [&changes] { ++changes; });
    window->show();
    window->activateWindow();
    entry->setFocus();
    QCoreApplication::processEvents();
    ASSERT_TRUE(entry->findChild<QLineEdit*>()->hasFocus());
  }  // destroyed while it is open
  Form<IntegerEntry> form;
  form.Control.SetLimits(1, 255);
  form.Type("300");
  form.Window.done(QDialog::Accepted);
  EXPECT_EQ(form.Shown(), "255") << "stored all the same";
  EXPECT_EQ(changes + form.Changed.count(), 0) << "the form's own part may be gone";
}

TEST(Integer5V, KeepsEveryCountAlsoWhenOnlyVisited) {
  Form<Integer5V> form;
  for (int count = 0; count <= 255; ++count) {
    form.Control.SetCount(count);
    form.Control.StoreText();
    ASSERT_EQ(form.Control.Count(), count);
    form.Enter(form.Shown().c_str());  // the two decimals alone
    ASSERT_EQ(form.Control.Count(), count);
  }
  QTest::mouseClick(form.Down, Qt::LeftButton);
  EXPECT_EQ(form.Control.Count(), 254);
}

}  // namespace
}  // namespace qdm
