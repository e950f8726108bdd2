// The commissioning sheet needs fonts and pages, which the editor has: it writes the sheet, without a window.
#include "base/file_access.h"
#include "command_line/record_files.h"
#include "config/configuration_file.h"
#include "port_commands/port_commands.h"

#include <QProcess>

#include <filesystem>
#include <string>
#include <string_view>

namespace qdm {
namespace {

QString ToQString(const std::filesystem::path& path) { return QString::fromStdString(PathToUtf8(path)); }

std::filesystem::path EditorBeside(const std::filesystem::path& programFolder) {
#ifdef _WIN32
  return programFolder / "qdm-editor.exe";
#else
  return programFolder / "qdm-editor";
#endif
}

}  // namespace

int Sheet(const SheetOptions& options, PortContext& context) {
  ReadConfigurationFile(options.File);
  const std::filesystem::path editor = EditorBeside(context.ProgramFolder);
  QStringList arguments = {QStringLiteral("--sheet"), ToQString(PathOf(options.Output))};
  if (context.DataVariable) arguments << QStringLiteral("--data") << ToQString(*context.DataVariable);
  arguments << QStringLiteral("--") << ToQString(PathOf(options.File));
  QProcess process;
  process.start(ToQString(editor), arguments);
  if (!process.waitForStarted(-1)) {
    throw CommandError(kUnusable, PathToUtf8(editor),
                       "cannot be started: " + process.errorString().toStdString());
  }
  process.closeWriteChannel();
  process.waitForFinished(-1);
  if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0) return kDone;
  // What Qt has to say of the machine comes before.
  const QByteArray said = process.readAllStandardError().trimmed();
  const std::string reason = said.mid(said.lastIndexOf('\n') + 1).toStdString();
  throw CommandError(kUnusable, options.Output, reason.empty() ? "cannot be written" : reason);
}

}  // namespace qdm
