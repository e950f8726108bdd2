#include "forms/projectors/new_name_form.h"

#include "library_fixture.h"

#include <QLabel>
#include <QPushButton>

namespace qdm {
namespace {

using testing::ElementsAre;
using NewName = LibraryFixture;

TEST_F(NewName, AddsACopyOfTheClipboardUnderNamesThatAreFree) {
  Put({Named("ACME", "X 1", 1)});
  globals_.ClipboardProjector = Named("ACME", "X 1", 2);
  NewNameForm form(globals_, prompts_);
  form.show();
  for (const char* model : {" x 1", "  "}) {  // there already; none
    Types("acme", model)(form);
    EXPECT_TRUE(form.isVisible()) << model;
  }
  EXPECT_EQ(prompts_.Shown.size(), 1U);
  Types("  Bräu ", " Neu 2 ")(form);
  EXPECT_EQ(form.result(), QDialog::Accepted);
  EXPECT_THAT(InMemory(), ElementsAre("ACME / X 1 = 1", "BRÄU / Neu 2 = 2"));
}

TEST_F(NewName, TakesOnlyWhatAFileCanHold) {
  const struct {
    const char* Typed;
    const char* Taken;
  } cases[] = {
      {"Größe €", "Größe €"},
      {"Sharp Ж", "Sharp "},
      {"123456789012345678901234567890123", "12345678901234567890123456789012"},
  };
  for (const auto& typed : cases) {
    for (const char* name : {"Text1", "Text2"}) {
      NewNameForm form(globals_, prompts_);
      auto& box = Child<QLineEdit>(form, name);
      for (const QChar c : QString::fromUtf8(typed.Typed)) {  // QTest's own keys are ASCII only
        QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_unknown, QString(c), {});
      }
      EXPECT_EQ(box.text(), QString::fromUtf8(typed.Taken));
      EXPECT_EQ(Child<QLabel>(form, "Hint").text().isEmpty(), typed.Taken == std::string(typed.Typed));
    }
  }
}

}  // namespace
}  // namespace qdm
