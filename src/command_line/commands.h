// The commands of `qdm`: what the command line says of each, and the function that does it, where that needs
// neither port nor pages. Each answers the exit status; trouble with files and other reasons to give up are
// exceptions that RunQdm reports.
#pragma once

#include "command_line/command_context.h"
#include "config/panel_types.h"
#include "panels/panel_image.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace qdm {

struct ExportOptions {
  std::string File;
  std::string Output;  // empty: standard output
};
int Export(const ExportOptions& options, CommandContext& context);

struct ImportOptions {
  std::string Json;
  std::string Output;
};
int Import(const ImportOptions& options, CommandContext& context);

struct CheckOptions {
  std::vector<std::string> Files;  // at least one
};
int Check(const CheckOptions& options, CommandContext& context);

struct CompareOptions {
  std::string First;
  std::string Second;
};
int Compare(const CompareOptions& options, CommandContext& context);

enum class ImageForm { Dump, Records, Explanation };
struct ImageOptions {
  std::string File;
  std::string Output;  // empty: text on standard output
  ImageForm Form = ImageForm::Dump;
};
// The image, or a CommandError that names the file, the field and the reason.
PanelImage ImageOf(const std::string& file, const PanelConfiguration& configuration);
int Image(const ImageOptions& options, CommandContext& context);

// What to do with a definition that differs from the library's of the same names.
enum class OnConflict { Report, Keep, Replace, Rename };

struct LibraryOptions {
  std::string Data;  // empty: the editor's own folder
};
struct AddOptions : LibraryOptions {
  std::string File;
  OnConflict Conflict = OnConflict::Report;
};
struct ExtractOptions : LibraryOptions {
  std::string Manufacturer;
  std::string Model;  // empty: all of the manufacturer's
  std::string Output;
};
struct RemoveOptions : LibraryOptions {
  std::string Manufacturer;
  std::string Model;
};
struct MergeOptions {
  std::string Base;  // may be absent or empty: an empty library
  std::string Ours;
  std::string Theirs;
  std::string Output;
};
int MergeProjectors(const MergeOptions& options, CommandContext& context);
int ListProjectors(const LibraryOptions& options, CommandContext& context);
int AddProjectors(const AddOptions& options, CommandContext& context);
int ExtractProjectors(const ExtractOptions& options, CommandContext& context);
int RemoveProjector(const RemoveOptions& options, CommandContext& context);

struct FindOptions {
  std::optional<ControllerTypeValue> ControllerType;
  std::vector<std::string> Ports;  // empty: all
};

struct DownloadOptions {
  std::string File;
  std::string Port;  // empty: whichever has the panel
};

struct LogOptions {
  std::vector<std::string> Files;  // empty: of all configurations
  bool Json = false;
  std::string Data;  // empty: the user's own folder
};
int Log(const LogOptions& options, CommandContext& context);

struct StatusOptions {
  std::vector<std::string> Files;
  std::string Data;
};
int Status(const StatusOptions& options, CommandContext& context);

struct DescribeOptions {
  std::string File;
};
int Describe(const DescribeOptions& options, CommandContext& context);

struct SheetOptions {
  std::string File;
  std::string Output;
};

struct SimulateOptions {
  ControllerTypeValue ControllerType = kQdm7;
  std::string Firmware = "1.3";
  std::string Settings = "9600,n,8,2";
  std::string Memory;  // empty: kept nowhere
  bool Pace = false;
  std::vector<std::string> Faults;
  std::vector<std::string> Press;  // names of slots
};

struct ManualOptions {
  std::string Page;
  bool Json = false;
  std::string Output;  // empty: no definition
  std::string Manufacturer;
  std::string Model;
  bool Doubtful = false;
};
int Manual(const ManualOptions& options, CommandContext& context);

// Which projector of a file is meant; both names empty: the only one.
struct ProjectorChoice {
  std::string File;
  std::string Manufacturer;
  std::string Model;
};
struct StandInOptions : ProjectorChoice {
  std::string Port;  // empty: a pseudo-terminal of its own
  int Delay = 0;     // milliseconds
  bool Silent = false;
  bool Wrong = false;
  std::string
      Busy;  // what power commands get while busy: "ignore", or text as it is pasted; empty: their reply
  bool Remarks = false;
};

struct ProbeOptions : ProjectorChoice {
  std::string Slot;  // or
  std::string Send;  // text as it is pasted
  std::string Port;  // empty: every port that is there
};

// What needs a port, or the editor's pages: the program decides how it is done.
struct PortCommands {
  std::function<int(const FindOptions&)> Find;
  std::function<int(const DownloadOptions&)> Download;
  std::function<int(const SheetOptions&)> Sheet;
  std::function<int(const SimulateOptions&)> Simulate;
  std::function<int(const StandInOptions&)> Projector;
  std::function<int(const ProbeOptions&)> Probe;
};

}  // namespace qdm
