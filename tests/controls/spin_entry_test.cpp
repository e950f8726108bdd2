#include "controls/hex_entry.h"
#include "controls/integer5v.h"
#include "controls/integer_entry.h"

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace qdm {
namespace {

// The entry in a window with a default button, as dialogs have them, and a second field to go to.
template <class Entry>
struct Form {
  QDialog Window;
  Entry Control{&Window};
  QLineEdit Other{&Window};
  QPushButton Done{&Window};
  QLineEdit* Text1 = Control.template findChild<QLineEdit*>(QStringLiteral("Text1"));
  QToolButton* Up = Control.template findChild<QToolButton*>(QStringLiteral("Up"));
  QToolButton* Down = Control.template findChild<QToolButton*>(QStringLiteral("Down"));
  QTimer* Timer1 = Control.template findChild<QTimer*>(QStringLiteral("Timer1"));
  QSignalSpy Changed{&Control, &SpinEntry::Changed};
  QSignalSpy DonePressed{&Done, &QPushButton::clicked};

  Form() {
    auto* column = new QVBoxLayout(&Window);
    for (QWidget* widget : {static_cast<QWidget*>(&Control), static_cast<QWidget*>(&Other)})
      column->addWidget(widget);
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
  void Click(QToolButton* button) { QTest::mouseClick(button, Qt::LeftButton); }

  // What the control's timer does in that time.
  void Pass(int milliseconds) {
    while (Timer1->isActive() && milliseconds >= Timer1->interval()) {
      milliseconds -= Timer1->interval();
      Control.Timer1_Timer();
    }
  }
  QString Shown() const { return Text1->text(); }
};

TEST(IntegerEntry, BringsSetValuesWithinItsLimits) {
  Form<IntegerEntry> form;
  form.Control.SetLimits(0, 10);
  for (const auto& [set, shown] : {std::pair(12, 10), {-3, 0}, {7, 7}, {10, 10}, {0, 0}, {100000, 10}}) {
    form.Control.SetValue(set);
    EXPECT_EQ(form.Control.Value(), shown);
    EXPECT_EQ(form.Shown(), QString::number(shown));
  }
  form.Control.SetValue(9);
  form.Control.SetLimits(1, 5);
  EXPECT_EQ(form.Shown(), QStringLiteral("5"));
  EXPECT_EQ(form.Changed.count(), 0) << "only the user changes a value in the owner's eyes";
}

TEST(IntegerEntry, TakesWhatIsEntered) {
  struct Case {
    const char* Typed;
    int Low;
    int High;
    int Value;
  };
  for (const Case& c : std::vector<Case>{{"99999", -32768, 32767, 32767},
                                         {"-99999", -32768, 32767, -32768},
                                         {"99999999999999999999999", -32768, 32767, 32767},
                                         {"300", 1, 255, 255},
                                         {"0", 1, 255, 1},
                                         {" 42 ", 1, 255, 42},
                                         {"+7", 1, 255, 7},
                                         {"-6", -45, 18, -6},
                                         {"", 1, 255, 5},
                                         {"12x", 1, 255, 5},
                                         {"-", 1, 255, 5}}) {
    Form<IntegerEntry> form;
    form.Control.Bind(5, c.Low, c.High, QStringLiteral("Level"));
    form.Enter(*c.Typed == '\0' ? " " : c.Typed);
    EXPECT_EQ(form.Control.Value(), c.Value) << c.Typed;
    EXPECT_EQ(form.Shown(), QString::number(c.Value)) << c.Typed;
    EXPECT_EQ(form.Changed.count(), 1) << c.Typed;
    EXPECT_EQ(form.DonePressed.count(), 0) << "Enter ends the number, not the dialog";
  }
}

TEST(IntegerEntry, GivesTypedTextBeforeItIsEntered) {
  Form<IntegerEntry> form;
  form.Control.Bind(5, 1, 255, QStringLiteral("Screen rise time"));
  form.Type("77");
  EXPECT_EQ(form.Control.Value(), 77);
  form.Type("300");
  EXPECT_EQ(form.Control.Value(), 255);
  EXPECT_EQ(form.Shown(), QStringLiteral("300")) << "nobody rewrites what is being typed";
  EXPECT_EQ(form.Changed.count(), 0);
}

TEST(IntegerEntry, SaysItsLabelAndRange) {
  Form<IntegerEntry> form;
  form.Control.Bind(300, 1, 255, QStringLiteral("Sreen lower time"));
  EXPECT_EQ(form.Text1->toolTip(), QStringLiteral("Sreen lower time: 1 to 255"));
  EXPECT_EQ(form.Text1->accessibleName(), QStringLiteral("Sreen lower time"));
  EXPECT_FALSE(QToolTip::isVisible()) << "only the user's own values are explained";
  form.Enter("256");
  EXPECT_EQ(QToolTip::text(), QStringLiteral("Sreen lower time: 1 to 255"));
}

TEST(SpinEntry, StepsAtOnceAfterASecondAndThenEveryTenth) {
  Form<IntegerEntry> form;
  form.Control.Bind(0, -10, 10, QStringLiteral("Level"));
  QTest::mousePress(form.Up, Qt::LeftButton);
  EXPECT_EQ(form.Control.Value(), 1);
  EXPECT_EQ(form.Timer1->interval(), 1000);
  form.Pass(1350);
  EXPECT_EQ(form.Control.Value(), 5);
  EXPECT_EQ(form.Timer1->interval(), 100);
  EXPECT_EQ(form.Changed.count(), 0);
  QTest::mouseRelease(form.Up, Qt::LeftButton);
  EXPECT_FALSE(form.Timer1->isActive());
  EXPECT_EQ(form.Changed.count(), 1);

  QTest::mousePress(form.Down, Qt::LeftButton);
  form.Pass(10000);
  QTest::mouseRelease(form.Down, Qt::LeftButton);
  EXPECT_EQ(form.Control.Value(), -10);
  EXPECT_EQ(form.Changed.count(), 2);
}

TEST(SpinEntry, CountsEveryPressOfAQuickHand) {
  Form<IntegerEntry> form;
  form.Click(form.Up);
  QTest::mouseDClick(form.Up, Qt::LeftButton);  // how the second press arrives
  QTest::mouseRelease(form.Up, Qt::LeftButton);
  EXPECT_EQ(form.Control.Value(), 2);
  EXPECT_EQ(form.Changed.count(), 2);
  QTest::mouseClick(form.Up, Qt::RightButton);
  EXPECT_EQ(form.Control.Value(), 2);
}

TEST(SpinEntry, StopsRepeatingWhenItIsTakenAway) {
  for (const bool hidden : {true, false}) {
    Form<IntegerEntry> form;
    QTest::mousePress(form.Up, Qt::LeftButton);
    hidden ? form.Control.hide() : form.Control.setEnabled(false);
    EXPECT_FALSE(form.Timer1->isActive());
    form.Control.Timer1_Timer();  // a tick that was on its way
    EXPECT_EQ(form.Control.Value(), 1);
  }
}

TEST(SpinEntry, StepsFromWhatHasBeenTyped) {
  Form<IntegerEntry> form;
  form.Control.Bind(5, 1, 255, QStringLiteral("Level"));
  form.Type("50");
  form.Click(form.Up);
  EXPECT_EQ(form.Control.Value(), 51);
}

TEST(SpinEntry, HasKeysForSteps) {
  Form<IntegerEntry> form;
  form.Control.Bind(100, 1, 255, QStringLiteral("Level"));
  int changes = 0;
  for (const auto& [key, value] : {std::pair(Qt::Key_Up, 101), {Qt::Key_PageUp, 111}, {Qt::Key_Down, 110}}) {
    QTest::keyClick(form.Text1, key);
    EXPECT_EQ(form.Control.Value(), value);
    EXPECT_EQ(form.Changed.count(), ++changes);
  }
  for (int i = 0; i < 20; ++i) QTest::keyClick(form.Text1, Qt::Key_PageDown);
  EXPECT_EQ(form.Control.Value(), 1);
}

TEST(SpinEntry, EscapeRestoresTheTextBeforeItClosesTheWindow) {
  Form<IntegerEntry> form;
  form.Control.Bind(100, 1, 255, QStringLiteral("Level"));
  form.Type("7");
  QTest::keyClick(form.Text1, Qt::Key_Escape);
  EXPECT_EQ(form.Shown(), QStringLiteral("100"));
  EXPECT_TRUE(form.Window.isVisible());
  EXPECT_EQ(form.Changed.count(), 0);
  QTest::keyClick(form.Text1, Qt::Key_Escape);
  EXPECT_FALSE(form.Window.isVisible());
}

TEST(SpinEntry, LeavingItEntersTheText) {
  Form<IntegerEntry> form;
  form.Control.Bind(5, 1, 255, QStringLiteral("Level"));
  form.Type("300");
  QTest::keyClick(form.Text1, Qt::Key_Tab);
  EXPECT_TRUE(form.Other.hasFocus());
  EXPECT_EQ(form.Shown(), QStringLiteral("255"));
  EXPECT_EQ(form.Changed.count(), 1);
  QTest::keyClick(&form.Other, Qt::Key_Backtab);
  QTest::keyClick(form.Text1, Qt::Key_Tab);
  EXPECT_EQ(form.Changed.count(), 2) << "also with the text as it was";
  EXPECT_EQ(form.Control.Value(), 255);
}

TEST(SpinEntry, RaisesOnceWhenItsOwnerTakesTheFocusAway) {
  Form<IntegerEntry> form;
  QObject::connect(&form.Control, &SpinEntry::Changed, &form.Window, [&form] { form.Other.setFocus(); });
  form.Enter("3");
  EXPECT_EQ(form.Changed.count(), 1);
}

TEST(SpinEntry, LeavesTheWheelToTheWindow) {
  Form<IntegerEntry> form;
  for (QWidget* part : {static_cast<QWidget*>(form.Text1), static_cast<QWidget*>(form.Up)}) {
    QWheelEvent wheel({5, 5}, part->mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(part, &wheel);
    EXPECT_FALSE(wheel.isAccepted());
  }
  EXPECT_EQ(form.Control.Value(), 0);
}

TEST(Integer5V, ReplacesVoltagesFromOutside) {
  Form<Integer5V> form;
  for (const auto& [set, value] : {std::pair(5.0F, 5.0F), {5.01F, 4.75F}, {-0.01F, 0.25F}, {0.0F, 0.0F}}) {
    form.Control.SetValue(set);
    EXPECT_EQ(form.Control.Value(), value);
  }
  form.Enter("7");
  EXPECT_EQ(form.Shown(), QStringLiteral("4.75"));
  form.Enter("1,5");
  EXPECT_EQ(form.Shown(), QStringLiteral("1.50"));
  form.Enter("2.375");
  EXPECT_EQ(form.Control.Value(), 2.375F);
  for (const char* unreadable : {"nan", "inf", "1.2.3", "x"}) {
    form.Enter(unreadable);
    EXPECT_EQ(form.Control.Value(), 2.375F) << unreadable;
  }
}

TEST(Integer5V, StepsOneCountAndStopsAtTheEnds) {
  Form<Integer5V> form;
  form.Control.SetValue(2.5F);
  form.Click(form.Down);
  EXPECT_EQ(form.Shown(), QStringLiteral("2.48"));
  for (int i = 0; i < 300; ++i) QTest::keyClick(form.Text1, Qt::Key_Down);
  EXPECT_EQ(form.Shown(), QStringLiteral("0.00"));
  for (int i = 0; i < 300; ++i) QTest::keyClick(form.Text1, Qt::Key_Up);
  EXPECT_EQ(form.Shown(), QStringLiteral("5.00"));
}

TEST(Integer5V, KeepsEveryCountAlsoWhenOnlyVisited) {
  Form<Integer5V> form;
  for (int count = 0; count <= 255; ++count) {
    form.Control.SetCount(count);
    form.Control.StoreText();
    ASSERT_EQ(form.Control.Count(), count);
    form.Enter(form.Shown().toLatin1());  // the two decimals alone
    ASSERT_EQ(form.Control.Count(), count);
  }
  form.Control.SetCount(128);
  EXPECT_EQ(form.Shown(), QStringLiteral("2.51"));
  form.Control.SetCount(300);
  EXPECT_EQ(form.Control.Count(), 242);  // 4.75 V
  form.Control.SetCount(-1);
  EXPECT_EQ(form.Control.Count(), 13);  // 0.25 V
}

TEST(HEXentry, ReadsAndShowsWords) {
  struct Case {
    const char* Typed;
    int Value;
    const char* Shown;
  };
  for (const Case& c : std::vector<Case>{{"1F", 31, "1F"},
                                         {"FFFF", -1, "FFFF"},
                                         {"8000", -32768, "8000"},
                                         {"7fff", 32767, "7FFF"},
                                         {"&h1f", 31, "1F"},
                                         {"10000", 32767, "7FFF"},
                                         {"FFFFFFFF", -1, "FFFF"},
                                         {"80000000", -32768, "8000"},
                                         {"123456789", 32767, "7FFF"},
                                         {"0000000001F", 31, "1F"},
                                         {"XY", 5, "5"},
                                         {"-1", 5, "5"}}) {
    Form<HEXentry> form;
    form.Control.SetValue(5);
    form.Enter(c.Typed);
    EXPECT_EQ(form.Control.Value(), c.Value) << c.Typed;
    EXPECT_EQ(form.Shown(), QLatin1String(c.Shown)) << c.Typed;
  }
}

TEST(HEXentry, StepsOverZeroAndStopsAtTheEnds) {
  Form<HEXentry> form;
  form.Control.SetValue(0);
  form.Click(form.Down);
  EXPECT_EQ(form.Shown(), QStringLiteral("FFFF"));
  form.Control.SetValue(32767);
  form.Click(form.Up);
  EXPECT_EQ(form.Shown(), QStringLiteral("7FFF"));
}

}  // namespace
}  // namespace qdm
