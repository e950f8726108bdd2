// From the program's start to the first paint: the editor with a library of 1,000 definitions against an
// empty window, each a process of its own.

#include "app/qt_prompts.h"
#include "app/resources.h"
#include "forms/editor/projector_panel_editor.h"
#include "forms/shared/globals.h"
#include "projectors/library_file.h"
#include "projectors/projector_files.h"
#include "start_window.h"

#include <QApplication>
#include <QMainWindow>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <chrono>

namespace qdm {
namespace {

constexpr std::string_view kArgument = "--first-paint=";
constexpr int kDefinitions = 1000;

class PaintWatch : public QObject {
 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    return QObject::eventFilter(watched, event);
  }
};

int ShowUntilPainted(QWidget& window) {
  PaintWatch watch;
  window.installEventFilter(&watch);
  window.show();
  return QApplication::exec();
}

std::chrono::duration<double> TimeOfStart(const QString& what) {
  const auto start = std::chrono::steady_clock::now();
  QProcess process;
  process.setStandardErrorFile(QProcess::nullDevice());
  process.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(kArgument.data()) + what});
  const bool ended = process.waitForFinished() && process.exitCode() == 0;
  if (!ended) std::abort();
  return std::chrono::steady_clock::now() - start;
}

void StartEditor(benchmark::State& state) {
  const QTemporaryDir folder;
  ProjectorLibrary library;
  ProjectorDefinition projector;
  for (int i = 0; i < kDefinitions; ++i) {
    projector.Manufacturer.AssignUtf8("MANUFACTURER " + std::to_string(i % 40));
    projector.Model.AssignUtf8("Model " + std::to_string(i));
    library.Append(projector);
  }
  WriteProjectorDatabase(folder.path().toStdString(), library);

  double editor = 0;
  double empty = 0;
  for ([[maybe_unused]] auto _ : state) {
    empty += TimeOfStart(QStringLiteral("empty")).count();
    const double seconds = TimeOfStart(folder.path()).count();
    editor += seconds;
    state.SetIterationTime(seconds);
  }
  state.counters["against_empty_window"] = editor / empty;
}
BENCHMARK(StartEditor)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace

std::optional<std::string_view> FirstPaintArgument(int argc, char** argv) {
  if (argc != 2 || !std::string_view(argv[1]).starts_with(kArgument)) return std::nullopt;
  return std::string_view(argv[1]).substr(kArgument.size());
}

int RunUntilFirstPaint(std::string_view what) {
  if (what == "empty") {
    QMainWindow window;
    return ShowUntilPainted(window);
  }
  InitialiseResources();
  Globals globals;
  globals.DataFolder = PathFromUtf8(what);
  QtPrompts prompts;
  QSettings settings(QString::fromStdString(PathToUtf8(globals.DataFolder / "settings.ini")),
                     QSettings::IniFormat);
  ProjectorPanelEditor editor(globals, prompts, settings, {});
  editor.Form_Load();
  return ShowUntilPainted(editor);
}

}  // namespace qdm
