#include "controls/buttons.h"
#include "controls/filter_box.h"

#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace qdm {
namespace {

struct Picker {
  QWidget Window;
  Buttons Control{&Window};
  QLineEdit Next{&Window};
  QSignalSpy Changed{&Control, &Buttons::Changed};

  Picker() {
    auto* row = new QHBoxLayout(&Window);
    row->addWidget(&Control);
    row->addWidget(&Next);
    Window.show();
    Window.activateWindow();
    QCoreApplication::processEvents();
  }
  QToolButton* Option1(int index) const {
    return Control.findChild<QToolButton*>(QStringLiteral("Option1_%1").arg(index));
  }
  std::string Chosen() const {
    std::string marks;
    for (int i = 0; i < Buttons::kButtons; ++i) marks += Option1(i)->isChecked() ? 'x' : '.';
    return marks;
  }
};

TEST(Buttons, HaveTheirPicturesAndNames) {
  const Picker picker;
  const char* const names[] = {"Volume up", "Volume down", "PC 1", "PC 2", "Video", "Power"};
  for (int i = 0; i < Buttons::kButtons; ++i) {
    EXPECT_EQ(picker.Option1(i)->accessibleName(), QLatin1String(names[i]));
    EXPECT_EQ(picker.Option1(i)->toolTip(), QLatin1String(names[i]));
    EXPECT_EQ(picker.Option1(i)->icon().pixmap(32).size(), QSize(32, 32)) << names[i];
  }
}

TEST(Buttons, ChooseByMouse) {
  Picker picker;
  picker.Control.SetValue(2);
  EXPECT_EQ(picker.Chosen(), "..x...");
  EXPECT_EQ(picker.Changed.count(), 0);
  QTest::mouseClick(picker.Option1(4), Qt::LeftButton);
  QTest::mouseClick(picker.Option1(4), Qt::LeftButton);  // again: stays chosen
  EXPECT_EQ(picker.Control.Value(), 4);
  EXPECT_EQ(picker.Chosen(), "....x.");
  EXPECT_EQ(picker.Changed.count(), 1);
}

TEST(Buttons, KeepAValueThatNoShownButtonStandsFor) {
  Picker picker;
  for (const int value : {0, 1, -1, 6, 32767}) {
    picker.Control.SetHiddenButtons({0, 1});
    picker.Control.SetValue(value);
    EXPECT_EQ(picker.Control.Value(), value);
    EXPECT_EQ(picker.Chosen(), "......");
  }
  picker.Control.SetValue(1);
  picker.Control.SetHiddenButtons({});
  EXPECT_EQ(picker.Chosen(), ".x....");
  EXPECT_EQ(picker.Changed.count(), 0);
}

TEST(Buttons, AreOneTabStopAndMoveByArrowsOverShownOnes) {
  Picker picker;
  picker.Control.SetHiddenButtons({0, 3});
  picker.Control.SetValue(2);
  picker.Control.setFocus();
  EXPECT_TRUE(picker.Option1(2)->hasFocus());
  QTest::keyClick(picker.Option1(2), Qt::Key_Right);
  EXPECT_EQ(picker.Control.Value(), 4);
  EXPECT_TRUE(picker.Option1(4)->hasFocus());
  QTest::keyClick(picker.Option1(4), Qt::Key_Left);
  QTest::keyClick(picker.Option1(2), Qt::Key_Up);
  QTest::keyClick(picker.Option1(1), Qt::Key_Left);  // nothing further
  EXPECT_EQ(picker.Control.Value(), 1);
  EXPECT_EQ(picker.Changed.count(), 3);
  QTest::keyClick(picker.Option1(1), Qt::Key_Tab);
  EXPECT_TRUE(picker.Next.hasFocus());
  QTest::keyClick(&picker.Next, Qt::Key_Backtab);
  EXPECT_TRUE(picker.Option1(1)->hasFocus());
}

TEST(Buttons, CanBeReachedWhenNothingIsChosen) {
  Picker picker;
  picker.Control.SetHiddenButtons({0, 1});
  picker.Control.SetValue(0);
  picker.Control.setFocus();
  ASSERT_TRUE(picker.Option1(2)->hasFocus());
  QTest::keyClick(picker.Option1(2), Qt::Key_Space);
  EXPECT_EQ(picker.Control.Value(), 2);
}

TEST(FilterBox, EscapeEmptiesItAndDownGoesToTheTree) {
  QWidget window;
  auto* column = new QVBoxLayout(&window);
  auto* filter = new FilterBox(&window);
  auto* tree = new QTreeWidget(&window);
  column->addWidget(filter);
  column->addWidget(tree);
  filter->SetView(tree);
  window.show();
  window.activateWindow();
  QCoreApplication::processEvents();
  filter->setFocus();
  QTest::keyClicks(filter, QStringLiteral("acme"));
  QTest::keyClick(filter, Qt::Key_Escape);
  EXPECT_EQ(filter->text(), QString());
  QTest::keyClick(filter, Qt::Key_Down);
  EXPECT_TRUE(tree->hasFocus());
}

}  // namespace
}  // namespace qdm
