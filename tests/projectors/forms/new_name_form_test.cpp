#include "projectors/forms/new_name_form.h"

#include "library_fixture.h"

#include <QLabel>
#include <QPushButton>

namespace qdm {
namespace {

using testing::ElementsAre;
using NewName = LibraryFixture;

// Key by key; QTest's own keys are ASCII only.
void TypeInto(QLineEdit& box, const QString& text) {
  for (const char32_t c : text.toUcs4()) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString::fromUcs4(&c, 1));
    QApplication::sendEvent(&box, &press);
  }
}

TEST_F(NewName, OffersTheClipboardsNames) {
  globals_.ClipboardProjector = Named("ACME", "X 1");
  NewNameForm form(globals_, prompts_);
  EXPECT_EQ(Child<QLineEdit>(form, "Text1").text(), QStringLiteral("ACME"));
  EXPECT_EQ(Child<QLineEdit>(form, "Text2").text(), QStringLiteral("X 1"));
}

TEST_F(NewName, DoneAddsACopyUnderTheTrimmedNamesAndKeepsThemInTheClipboard) {
  globals_.ClipboardProjector = Named("ACME", "X 1", 7);
  NewNameForm form(globals_, prompts_);
  Types("  Bräu ", " Neu 2 ")(form);
  EXPECT_EQ(form.result(), QDialog::Accepted);
  EXPECT_THAT(InMemory(), ElementsAre("BRÄU / Neu 2 = 7"));
  EXPECT_EQ(Line(globals_.ClipboardProjector), "BRÄU / Neu 2 = 7");
}

TEST_F(NewName, RefusesTheNamesOfTheLibraryAndStaysOpen) {
  Put({Named("ACME", "X 1", 1)});
  globals_.ClipboardProjector = Named("ACME", "X 1", 2);
  NewNameForm form(globals_, prompts_);
  form.show();
  Types("acme", " x 1")(form);
  EXPECT_THAT(prompts_.Shown,
              ElementsAre(Message{"Projector ACME / x 1 already exists cannot paste to this name!",
                                  "Sorry cannot paste", MessageIcon::Exclamation}));
  EXPECT_TRUE(form.isVisible());
  EXPECT_THAT(InMemory(), ElementsAre("ACME / X 1 = 1"));
  EXPECT_EQ(Line(globals_.ClipboardProjector), "ACME / X 1 = 2");

  Types("acme", "x 2")(form);
  EXPECT_FALSE(form.isVisible());
  EXPECT_THAT(InMemory(), ElementsAre("ACME / X 1 = 1", "ACME / x 2 = 2"));
}

TEST_F(NewName, CancelChangesNothing) {
  globals_.ClipboardProjector = Named("ACME", "X 1");
  NewNameForm form(globals_, prompts_);
  Types("OTHER", "Y", "Cancel")(form);
  EXPECT_EQ(form.result(), QDialog::Rejected);
  EXPECT_THAT(InMemory(), testing::IsEmpty());
  EXPECT_EQ(Line(globals_.ClipboardProjector), "ACME / X 1 = 0");
}

TEST_F(NewName, TakesOnlyWhatAFileCanHold) {
  struct Case {
    const char* Typed;
    const char* Taken;
    bool Told;
  };
  const Case cases[] = {
      {"Größe €", "Größe €", false},
      {"Sharp Ж", "Sharp ", true},
      {"😀", "", true},
      {"12345678901234567890123456789012", "12345678901234567890123456789012", false},
      {"123456789012345678901234567890123", "12345678901234567890123456789012", true},
  };
  for (const char* name : {"Text1", "Text2"}) {
    for (const Case& typed : cases) {
      NewNameForm form(globals_, prompts_);
      auto& box = Child<QLineEdit>(form, name);
      TypeInto(box, QString::fromUtf8(typed.Typed));
      EXPECT_EQ(box.text(), QString::fromUtf8(typed.Taken));
      EXPECT_EQ(!Child<QLabel>(form, "Hint").text().isEmpty(), typed.Told) << typed.Typed;
    }
  }
}

TEST_F(NewName, NeedsBothNames) {
  NewNameForm form(globals_, prompts_);
  const auto& done = Child<QPushButton>(form, "Done");
  EXPECT_FALSE(done.isEnabled());
  Child<QLineEdit>(form, "Text1").setText(QStringLiteral("ACME"));
  Child<QLineEdit>(form, "Text2").setText(QStringLiteral("  "));
  EXPECT_FALSE(done.isEnabled());
  Child<QLineEdit>(form, "Text2").setText(QStringLiteral("X"));
  EXPECT_TRUE(done.isEnabled());
}

}  // namespace
}  // namespace qdm
