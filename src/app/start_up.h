// The program's start: reads the command line, makes what the windows share (records, ports, clock, prompts,
// settings, help) and shows the main window until it is closed.
#pragma once

#include <QString>
#include <QStringList>

#include <filesystem>
#include <optional>
#include <string>

namespace qdm {

class EditorApplication;
class ProjectorPanelEditor;
class UserPrompts;

struct StartArguments {
  bool Demo = false;
  std::optional<std::filesystem::path> DataFolder;
  QString Sheet;       // write this commissioning sheet of `File` and end; empty: no
  QString File;        // as it stands on the command line; empty for none
  QStringList Others;  // which are not opened
};

// `arguments` begins with the program's name. Ends the program for --help, --version and what it does not
// know.
StartArguments ReadArguments(const QStringList& arguments);

// Answers --help and --version, which need no display, and ends the program then.
void TellWhatIsAsked(int& argc, char** argv);

// Whether a sheet is asked for, which needs no display.
bool SheetIsAsked(int argc, char** argv);
// Writes it; what went wrong goes to the error stream. Exit status of the program.
int WriteSheetOnly(int& argc, char** argv);

// What becomes of an exception that nobody caught: the unsaved work is kept and the user told.
void TellException(ProjectorPanelEditor& editor, UserPrompts& prompts, const std::string& what);

// Exit status of the program.
int RunEditor(EditorApplication& application);

}  // namespace qdm
