#include "app/start_up.h"

#include "app/demonstration.h"
#include "app/editor_application.h"
#include "app/end_of_session.h"
#include "app/help.h"
#include "app/language.h"
#include "app/program_windows.h"
#include "app/qt_prompts.h"
#include "app/readable_style.h"
#include "app/resources.h"
#include "base/words.h"
#include "config/configuration_file.h"
#include "config/version.h"
#include "forms/editor/projector_panel_editor.h"
#include "forms/shared/busy_work.h"
#include "forms/shared/fit_to_screen.h"
#include "forms/shared/globals.h"
#include "forms/shared/qt_text.h"
#include "forms/work_log/sheet_pages.h"
#include "projectors/data_folder.h"
#include "projectors/library_file.h"
#include "serial_io/event_loop_waiting.h"
#include "serial_io/port_list.h"
#include "simulation/simulated_line.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QIcon>
#include <QLocale>
#include <QRegularExpression>
#include <QSettings>
#include <QTimer>

#include <algorithm>
#include <future>
#include <iostream>
#include <memory>
#include <string_view>
#include <utility>

namespace qdm {
namespace {

void NameProgram() {
  QCoreApplication::setOrganizationName(QStringLiteral("Brevan"));
  QCoreApplication::setApplicationName(QStringLiteral("QDM Editor"));
  QCoreApplication::setApplicationVersion(QString::fromStdString(VersionText()));
}

// A desktop's dark palette often leaves the texts of empty entries as dark as on a light one.
void MakeReadable(QApplication& application) {
  QApplication::setStyle(new ReadableStyle);
  QPalette palette = application.palette();
  QColor placeholder = palette.color(QPalette::Text);
  placeholder.setAlphaF(0.6F);
  palette.setColor(QPalette::PlaceholderText, placeholder);
  application.setPalette(palette);
}

// After the first image: all of them are decoded and sent at once. No window manager shows larger ones.
void ShowIcon() {
  QIcon icon;
  for (const int size : {16, 32, 48, 64}) {
    icon.addFile(QStringLiteral(":/icons/qdm-editor-%1.png").arg(size), QSize(size, size));
  }
  QApplication::setWindowIcon(icon);
}

std::unique_ptr<Demonstration> MakeDemonstration(const StartArguments& arguments, UserPrompts& prompts) {
  if (!arguments.Demo) return nullptr;
  try {
    return std::make_unique<Demonstration>(arguments.File);
  } catch (const FileError& error) {
    prompts.Show(nullptr, SorryAbout(error));
    return nullptr;
  }
}

// A folder that cannot be prepared is told; the library is empty then, and saving it says so again.
std::filesystem::path PreparedDataFolder(const StartArguments& arguments,
                                         const std::filesystem::path& programFolder, UserPrompts& prompts) {
  const auto named = arguments.DataFolder ? arguments.DataFolder : DataFolderVariable();
  const DataFolder folder = FindDataFolder(named, programFolder, UserDataFolder());
  try {
    DoBusy(nullptr, QString::fromStdString(Say("Still preparing the folder of the projector data base.")),
           [&folder] { PrepareDataFolder(folder); });
  } catch (const FileError& error) {
    prompts.Show(nullptr, SorryAbout(error));
  }
  return folder.Folder;
}

// A demonstration neither reads nor leaves traces in the user's settings.
std::unique_ptr<QSettings> MakeSettings(const Demonstration* demonstration) {
  if (demonstration == nullptr) return std::make_unique<QSettings>();
  const QString file = QString::fromStdString(PathToUtf8(demonstration->Folder() / "settings.ini"));
  return std::make_unique<QSettings>(file, QSettings::IniFormat);
}

}  // namespace

StartArguments ReadArguments(const QStringList& arguments) {
  const QCommandLineOption demo(QStringLiteral("demo"),
                                QStringLiteral("Open the examples, with simulated panels on COM1 to COM4."));
  const QCommandLineOption data(QStringLiteral("data"),
                                QStringLiteral("Keep the projector library in this folder."),
                                QStringLiteral("DIR"));
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Describes and programs QDM wall panels and TL-VOX amplifiers."));
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption sheet(QStringLiteral("sheet"),
                                 QStringLiteral("Write the commissioning sheet of the *.BVC to this .pdf or "
                                                ".html and end; needs no display."),
                                 QStringLiteral("SHEET"));
  parser.addOptions({demo, data, sheet});
  parser.addPositionalArgument(QStringLiteral("file"),
                               QStringLiteral("A *.BVC to open or a *.BVD to import."),
                               QStringLiteral("[file]"));
  parser.process(arguments);

  StartArguments read;
  read.Demo = parser.isSet(demo);
  if (parser.isSet(data)) read.DataFolder = ToPath(parser.value(data));
  read.Sheet = parser.value(sheet);
  // A path with blanks that nobody quoted comes in pieces, of which the last one has the ending.
  QStringList files;
  bool complete = true;
  for (const QString& piece : parser.positionalArguments()) {
    if (complete) {
      files << piece;
    } else {
      files.last() += QLatin1Char(' ') + piece;
    }
    static const QRegularExpression kEnding(QStringLiteral("\\.BV[CD]\"?$"),
                                            QRegularExpression::CaseInsensitiveOption);
    complete = kEnding.match(piece).hasMatch();
  }
  if (files.isEmpty()) return read;
  read.File = files.takeFirst();
  read.Others = files;
  return read;
}

void TellWhatIsAsked(int& argc, char** argv) {
  const bool asked = std::any_of(argv + 1, argv + argc, [](const std::string_view argument) {
    return argument == "-h" || argument == "--help" || argument == "-v" || argument == "--version";
  });
  if (!asked) return;
  const QCoreApplication application(argc, argv);
  NameProgram();
  ReadArguments(QCoreApplication::arguments());
}

bool SheetIsAsked(int argc, char** argv) {
  return std::any_of(argv + 1, argv + argc,
                     [](const std::string_view argument) { return argument.starts_with("--sheet"); });
}

int WriteSheetOnly(int& argc, char** argv) {
#ifndef _WIN32
  qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
  const QGuiApplication application(argc, argv);
  NameProgram();
  InitialiseResources();
  const StartArguments arguments = ReadArguments(QGuiApplication::arguments());
  try {
    const std::filesystem::path file = ToPath(arguments.File);
    WorkLog log(
        WorkLogFolder(arguments.DataFolder ? arguments.DataFolder : DataFolderVariable(), UserDataFolder()));
    const QString html = SheetHtml(ReadConfiguration(file), file, log, CommissionedBy(QSettings()));
    const std::filesystem::path sheet = ToPath(arguments.Sheet);
    WriteFileSafely(sheet, SheetFor(html, sheet));
    return 0;
  } catch (const FileError& error) {
    std::cerr << "cannot " << error.Operation() << ": " << error.Reason() << "\n";
    return 1;
  }
}

void TellException(ProjectorPanelEditor& editor, UserPrompts& prompts, const std::string& what) {
  const bool kept = editor.KeepWork();
  const QString text = EditorApplication::tr("Something went wrong: %1").arg(QString::fromStdString(what));
  const QString detail =
      kept ? EditorApplication::tr("What you are working on is kept. The editor goes on.")
           : EditorApplication::tr("What you are working on could not be kept: save it now.");
  prompts.Show(QApplication::activeWindow(),
               {text.toStdString(), Say("Sorry"), MessageIcon::Exclamation, detail.toStdString()});
}

int RunEditor(EditorApplication& application) {
  NameProgram();
  QApplication::setApplicationDisplayName({});
  QApplication::setDesktopFileName(QStringLiteral("qdm-editor"));
  MakeReadable(application);
  FollowFocus(application);
  InitialiseResources();
  Language language;
  language.Load(QLocale::system(), QApplication::applicationDirPath());
  const StartArguments arguments = ReadArguments(QApplication::arguments());
  QtPrompts prompts;
  const auto demonstration = MakeDemonstration(arguments, prompts);
  if (arguments.Demo && !demonstration) return 1;
  const auto settings = MakeSettings(demonstration.get());

  Globals globals;
  globals.ProgramFolder = ToPath(QApplication::applicationDirPath());
  globals.DataFolder =
      demonstration ? demonstration->Folder() : PreparedDataFolder(arguments, globals.ProgramFolder, prompts);
  // Read while the windows are made.
  auto library =
      std::async(std::launch::async, [folder = globals.DataFolder] { return ReadProjectorDatabase(folder); });
  EventLoopWaiting time;
  std::unique_ptr<SerialPorts> ports = MakeSystemPorts();
  if (demonstration) ports = DemonstrationPorts(time);
  Help help(globals.ProgramFolder, prompts);
  application.installEventFilter(&help);

  WorkLog log(demonstration
                  ? demonstration->Folder()
                  : WorkLogFolder(arguments.DataFolder ? arguments.DataFolder : DataFolderVariable(),
                                  UserDataFolder()));
  ProgramWindows windows({globals, *ports, time, prompts, *settings, log, help});
  ProjectorPanelEditor editor(globals, prompts, *settings, windows.ForEditor());
  windows.SetEditor(editor);
  application.SetOnException([&](const std::string& what) { TellException(editor, prompts, what); });
  const EndOfSession end([&] { editor.KeepWork(); }, [&] { editor.LeaveUnasked(); });
  editor.Form_Load(std::move(library));
  editor.show();
  ShowIcon();
  editor.OpenNamedFile(demonstration ? demonstration->Configuration() : arguments.File, arguments.Others);
  if (demonstration) {
    editor.ShowStatus(EditorApplication::tr(
        "Demonstration: simulated panels on COM1 to COM4, on COM5 the projector cable of the one that was "
        "programmed last, and copies of the examples that go at the end"));
  }
  QTimer::singleShot(0, &editor, &ProjectorPanelEditor::OfferKeptWork);
  return QApplication::exec();
}

}  // namespace qdm
