// Takes the help's pictures from the running windows on the example data:
//   make_pictures EXAMPLES HELP_PICTURES README_PICTURES
// The look is fixed, so that a picture changes only when its window does.
#include "app/resources.h"
#include "config/configuration_file.h"
#include "config/forms/projector_panel_editor.h"
#include "download/forms/download_form.h"
#include "download/simulated_line.h"
#include "projectors/forms/projector_replace_form.h"
#include "projectors/forms/projector_selector.h"
#include "projectors/forms/projector_setup_form.h"
#include "projectors/forms/qt_text.h"
#include "serial_io/event_loop_waiting.h"

#include <QApplication>
#include <QDir>
#include <QSettings>
#include <QStyleFactory>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace qdm {
namespace {

[[noreturn]] void Fail(const std::string& reason) {
  std::fprintf(stderr, "make_pictures: %s\n", reason.c_str());
  std::exit(1);
}

// Nothing asks anything while pictures are taken; what does is a mistake in this program.
class NoPrompts : public UserPrompts {
 public:
  void Show(QWidget*, const Message& message) override { Fail(message.Text); }
  bool AskYesNo(QWidget*, const Message& question) override { Fail(question.Text); }
  SaveAnswer AskSave(QWidget*, const Message& question) override { Fail(question.Text); }
  std::optional<QString> OpenFile(QWidget*, const char*) override { Fail("Open?"); }
  std::optional<QString> SaveFile(QWidget*, const char*) override { Fail("Save?"); }
};

void Save(QWidget& window, const QString& file) {
  for (int round = 0; round < 3; ++round) QApplication::processEvents();
  // A blinking cursor is in one picture and not in the next.
  if (QWidget* focus = window.focusWidget()) focus->clearFocus();
  QApplication::processEvents();
  if (!window.grab().save(file)) Fail(file.toStdString() + " cannot be written");
}

struct Pictures {
  QDir Examples;
  QDir Help;
  QDir Readme;
  QTemporaryDir Data;
  NoPrompts Prompts;
  QSettings Settings{Data.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat};
  Globals Shared;

  Pictures(const QString& examples, const QString& help, const QString& readme)
      : Examples(examples), Help(help), Readme(readme) {
    Shared.DataFolder = ToPath(Data.path());
    Shared.ProgramFolder = ToPath(QApplication::applicationDirPath());
    for (const QString& name : Examples.entryList({QStringLiteral("*.DEF"), QStringLiteral("*.BVC")})) {
      QFile::copy(Examples.filePath(name), Data.filePath(name));
    }
  }

  const ProjectorDefinition& Projector(std::u16string_view manufacturer, std::u16string_view model) const {
    const auto index =
        Shared.ProjectorDatabase.FindProjector(FixedText<32>(manufacturer), FixedText<32>(model));
    if (!index) Fail("an example projector is missing");
    return Shared.ProjectorDatabase[*index];
  }

  void MainWindow() {
    const EditorWindows windows{[](QWidget*) {}, [](QWidget*, const PanelConfiguration&) {}, [](QWidget*) {},
                                [](QWidget*) {}, [](QWidget*) {}};
    ProjectorPanelEditor editor(Shared, Prompts, Settings, windows);
    editor.Form_Load();
    editor.show();
    editor.OpenNamedFile(Data.filePath(QStringLiteral("Boardroom QDM7.BVC")));
    editor.ShowStatus(QStringLiteral("Opened Boardroom QDM7.BVC (/home/anna/rooms)"));
    editor.resize(1366, 740);
    Save(editor, Readme.filePath(QStringLiteral("main-window.png")));
    editor.resize(editor.minimumSizeHint().expandedTo(QSize(900, 560)));
    Save(editor, Help.filePath(QStringLiteral("main-window.png")));
  }

  void Selector() {
    ProjectorSelector selector(Shared, Prompts, [](QWidget*) {});
    selector.show();
    Save(selector, Help.filePath(QStringLiteral("projector-selector.png")));
  }

  void Replace() {
    ProjectorDefinition changed = Projector(u"CORVANE", u"C32");
    changed.WarmUpTime = 90;
    changed.Strings[kBlank] = changed.Strings[kBlankOff];
    Shared.CurrentProjector = changed;
    ProjectorReplaceForm form(Shared, Prompts);
    form.show();
    Save(form, Help.filePath(QStringLiteral("replace.png")));
  }

  void Setup() {
    Shared.CurrentProjector = Projector(u"BRACKENLIGHT", u"BL-900 Theatre");
    ProjectorSetupForm form(Shared, Prompts, {});
    form.show();
    Save(form, Help.filePath(QStringLiteral("projector-setup.png")));
  }

  // Searches in true time: some eight seconds.
  void DownloadWindow() {
    EventLoopWaiting time;
    const std::unique_ptr<SimulatedPorts> ports = DemonstrationPorts(time);
    const PanelConfiguration configuration =
        ReadConfiguration(ToPath(Examples.filePath(QStringLiteral("Boardroom QDM7.BVC"))));
    Download form(Shared, configuration, *ports, time, Prompts);
    form.show();
    form.Timer1_Timer();
    Save(form, Help.filePath(QStringLiteral("download.png")));
  }
};

int Make(const QStringList& arguments) {
  if (arguments.size() != 4) {
    std::fputs("usage: make_pictures EXAMPLES HELP_PICTURES README_PICTURES\n", stderr);
    return 2;
  }
  Pictures pictures(arguments[1], arguments[2], arguments[3]);
  pictures.MainWindow();
  pictures.Selector();
  pictures.Replace();
  pictures.Setup();
  pictures.DownloadWindow();
  return 0;
}

}  // namespace
}  // namespace qdm

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
  QApplication::setCursorFlashTime(0);
  qdm::InitialiseResources();
  return qdm::Make(QApplication::arguments());
}
