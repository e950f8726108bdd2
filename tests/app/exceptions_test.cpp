// An exception that no handler caught: nothing is lost, the user is told, the editor goes on.
#include "app/editor_application.h"
#include "app/start_up.h"
#include "config/configuration_file.h"
#include "forms/editor/projector_panel_editor.h"
#include "forms/editor/unsaved_work.h"
#include "forms/projectors/library_fixture.h"

#include <QAbstractButton>
#include <QSettings>
#include <QTimer>

#include <new>
#include <stdexcept>

namespace qdm {
namespace {

using testing::HasSubstr;

class Exceptions : public LibraryFixture {
 protected:
  Exceptions() {
    editor_.Form_Load();
    editor_.show();
    Application().SetOnException([this](const std::string& what) { TellException(editor_, prompts_, what); });
  }
  ~Exceptions() override {
    Application().SetOnException([](const std::string& what) { ADD_FAILURE() << what; });
  }
  EditorWindows Windows() {
    EditorWindows windows;
    windows.Help = [this](QWidget*) { fail_(); };
    return windows;
  }
  void Fail(const std::function<void()>& fail) {
    fail_ = fail;
    prompts_.Shown.clear();
    QTimer::singleShot(0, &Child<QAction>(editor_, "HELP"), &QAction::trigger);
    while (prompts_.Shown.empty()) QCoreApplication::processEvents();
  }
  static EditorApplication& Application() { return *static_cast<EditorApplication*>(qApp); }

  QSettings settings_{QString::fromStdString((folder_ / "settings.ini").string()), QSettings::IniFormat};
  // Throws where a window of the program would.
  std::function<void()> fail_;
  ProjectorPanelEditor editor_{globals_, prompts_, settings_, Windows()};
};

TEST_F(Exceptions, FromAnyHandlerKeepTheWorkAreToldAndEndNothing) {
  const struct {
    const char* Option;  // changed before
    std::function<void()> Fail;
    std::string Told;
  } cases[] = {
      {"LockUsingButtonsCheck", [] { throw std::runtime_error("the moon is full"); },
       "Something went wrong: the moon is full"},
      {"LockOnFrontPanelCheck", [] { throw std::bad_alloc(); }, "Something went wrong: out of memory"},
      {"TurnOffNoButtonCheck", [] { throw 7; }, "Something went wrong: unknown error"},
  };
  PanelConfiguration before{};
  for (const auto& c : cases) {
    Child<QAbstractButton>(editor_, c.Option).click();
    Fail(c.Fail);
    ASSERT_EQ(prompts_.Shown.size(), 1U);
    EXPECT_EQ(prompts_.LastText(), c.Told);
    EXPECT_THAT(prompts_.Shown[0].Detail, HasSubstr("is kept"));
    ASSERT_EQ(KeptWork(settings_).size(), 1);
    const PanelConfiguration kept = ReadConfiguration(KeptWork(settings_)[0].toStdString());
    EXPECT_NE(kept, before) << "as it is now";
    before = kept;
  }
  EXPECT_TRUE(editor_.isVisible());

  globals_.DataFolder /= "missing";
  Child<QAbstractButton>(editor_, cases[0].Option).click();
  Fail(cases[0].Fail);
  EXPECT_THAT(prompts_.Shown[0].Detail, HasSubstr("save it now"));
}

// A box that cannot be shown either, and windows that fail at every painting, are no reason to end.
TEST_F(Exceptions, OfTheTellingItselfAreDropped) {
  int told = 0;
  Application().SetOnException([&told](const std::string&) {
    ++told;
    QTimer::singleShot(0, qApp, [] { throw std::runtime_error("again"); });
    QCoreApplication::processEvents();
    throw std::bad_alloc();
  });
  QTimer::singleShot(0, qApp, [] { throw std::runtime_error("first"); });
  QCoreApplication::processEvents();
  EXPECT_EQ(told, 1);
}

}  // namespace
}  // namespace qdm
