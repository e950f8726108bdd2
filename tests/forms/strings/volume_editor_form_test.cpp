#include "forms/strings/volume_editor_form.h"

#include "forms/controls/integer_entry.h"
#include "projectors/projector_volume.h"
#include "support/dialog_script.h"
#include "support/fake_prompts.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace qdm {
namespace {

class VolumeEditorFormTest : public testing::Test {
 protected:
  ProjectorDefinition Projector;
  FakePrompts Prompts;
  std::unique_ptr<VolumeEditorForm> Form;

  void Open(const VolumeFormat& format) {
    StoreVolumeFormat(Projector, format);
    Form = std::make_unique<VolumeEditorForm>(Projector, Prompts);
    ShowActive(*Form);
  }
  template <class Widget>
  Widget* The(const char* name) {
    return Form->findChild<Widget*>(QLatin1String(name));
  }
  void Click(const char* name) {
    QWidget* widget = The<QPushButton>(name);  // the entries have buttons "Up" and "Down", too
    if (widget == nullptr) widget = The<QAbstractButton>(name);
    QTest::mouseClick(widget, Qt::LeftButton, {}, QPoint(8, widget->height() / 2));
  }
  // Leaves the focus in the text.
  void Enter(const char* entry, const char* text) {
    auto* box = The<QWidget>(entry)->findChild<QLineEdit*>();
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, QLatin1String(text));
  }
  std::string Text(const char* label) { return The<QLabel>(label)->text().toStdString(); }
};

// 0..100 in steps of 10 from 50 on, as three decimal characters.
constexpr VolumeFormat kDecimal = {100, 0, 10, 50, false, 3, LevelFormat::DecimalInAscii, false};

TEST_F(VolumeEditorFormTest, DoneIsRefusedWhileARuleIsBroken) {
  Open(kDecimal);
  for (int i = 0; i < 7; ++i) Click("Up");
  EXPECT_EQ(Text("DemoText"), "\"100\"") << "trying ends at the maximum";
  Enter("MaximumLevelInHex", "3E8");
  The<QPushButton>("Done")->click();  // as its shortcut does, which leaves the focus in the text
  ASSERT_EQ(Prompts.Shown.size(), 1U);
  EXPECT_EQ(Prompts.Shown[0].Text, "Cannot exit there is an error in the configuration");
  EXPECT_EQ(The<IntegerEntry>("MaximumLevel")->Value(), 1000) << "the twin follows";
  EXPECT_EQ(VolumeFormatOf(Projector), kDecimal);

  Click("NumberOfBytes_3");
  EXPECT_EQ(Text("ErrorLabel"), "Message Format is Ok");
  Click("Done");
  EXPECT_FALSE(Form->isVisible());
  VolumeFormat changed = kDecimal;
  changed.MaximumLevel = 1000;
  changed.NumberOfBytes = 4;
  EXPECT_EQ(VolumeFormatOf(Projector), changed);
}

}  // namespace
}  // namespace qdm
