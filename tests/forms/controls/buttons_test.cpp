#include "forms/controls/buttons.h"
#include "support/dialog_script.h"

#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace qdm {
namespace {

struct Picker {
  Buttons Control;
  QSignalSpy Changed{&Control, &Buttons::Changed};

  Picker() { ShowActive(Control); }
  QRadioButton* Option1(int index) const {
    return Control.findChild<QRadioButton*>(QStringLiteral("Option1_%1").arg(index));
  }
  std::string Chosen() const {
    std::string marks;
    for (int i = 0; i < Buttons::kButtons; ++i) marks += Option1(i)->isChecked() ? 'x' : '.';
    return marks;
  }
};

TEST(Buttons, KeepAValueThatNoShownButtonStandsFor) {
  Picker picker;
  for (const int value : {0, 1, -1, 6, 32767}) {
    picker.Control.SetShownButtons({false, false, true, true, true, true});
    picker.Control.SetValue(value);
    EXPECT_EQ(picker.Control.Value(), value);
    EXPECT_EQ(picker.Chosen(), "......");
  }
  picker.Control.setFocus();
  EXPECT_TRUE(picker.Option1(2)->hasFocus()) << "keys reach it all the same";
  picker.Control.SetValue(1);
  picker.Control.SetShownButtons({true, true, true, true, true, true});
  EXPECT_EQ(picker.Chosen(), ".x....");
  EXPECT_EQ(picker.Changed.count(), 0);
}

TEST(Buttons, AreChosenByMouseAndByArrowsOverShownOnes) {
  Picker picker;
  picker.Control.SetShownButtons({false, true, true, false, true, true});
  QTest::mouseClick(picker.Option1(2), Qt::LeftButton);
  QTest::mouseClick(picker.Option1(2), Qt::LeftButton);  // again: stays chosen
  EXPECT_EQ(picker.Chosen(), "..x...");
  EXPECT_EQ(picker.Changed.count(), 1);
  QTest::keyClick(picker.Option1(2), Qt::Key_Right);
  EXPECT_EQ(picker.Control.Value(), 4);
  EXPECT_TRUE(picker.Option1(4)->hasFocus());
  QTest::keyClick(picker.Option1(4), Qt::Key_Left);
  QTest::keyClick(picker.Option1(2), Qt::Key_Up);
  QTest::keyClick(picker.Option1(1), Qt::Key_Left);  // nothing further
  EXPECT_EQ(picker.Control.Value(), 1);
  EXPECT_EQ(picker.Changed.count(), 4);
}

}  // namespace
}  // namespace qdm
