// The library's file: loading against reading and copying it, saving against writing and flushing as many
// bytes; and what else grows with the library.
#include "config/panel_configuration.h"
#include "library_of.h"
#include "measure.h"
#include "panels/panel_image.h"
#include "projectors/library_file.h"
#include "projectors/projector_files.h"
#include "support/temp_folder.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <utility>

namespace qdm::bench {
namespace {

// In pieces that stay warm, as the library reads them; each is copied to where nobody has been.
void ReadAndCopy(const std::filesystem::path& file) {
  const std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[SizeToRead(file)]);
  std::uint8_t* to = copy.get();
  ReadInPieces(file, kDefinitionsPiece, [&to](ByteView piece) {
    std::memcpy(to, piece.data(), piece.size());
    to += piece.size();
  });
}

Turns Loading(const TempFolder& folder, int turns) {
  return TakeTurns(
      turns,
      [&] {
        return WallSeconds([&] {
          ProjectorLibrary library;
          LoadProjectorDatabase(folder.Path(), library);
        });
      },
      [&] { return WallSeconds([&] { ReadAndCopy(ProjectorFiles(folder.Path()).Library); }); });
}

Turns Saving(const TempFolder& folder, const ProjectorLibrary& library, int turns) {
  const Bytes stored = EncodeDefinitions(library.Elements());
  return TakeTurns(
      turns, [&] { return WallSeconds([&] { WriteProjectorDatabase(folder.Path(), library); }); },
      [&] { return WallSeconds([&] { WriteAndFlush(folder / "plain", stored); }); });
}

// Of this process, in bytes.
double MemoryFigure(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double kilobytes = 0;
    if (word == name + ":" && status >> kilobytes) return kilobytes * 1024;
  }
  return 0;
}

// The most memory that is in use while `work` runs, against the library alone.
double PeakOver(const ProjectorLibrary& library, const std::function<void()>& work) {
  std::ofstream("/proc/self/clear_refs") << "5";  // the peak is counted from here
  const double before = MemoryFigure("VmRSS");
  work();
  const double held = static_cast<double>(library.Size() * sizeof(ProjectorDefinition));
  return (held + MemoryFigure("VmHWM") - before) / held;
}

double ImportTime(std::size_t count, std::size_t first) {
  ProjectorLibrary library = LibraryOf(count);
  std::vector<ProjectorDefinition> incoming = Definitions(first, count, 100);
  return ProcessorSeconds([&] {
    ImportDefinitions(std::move(incoming), library, [](const ProjectorDefinition&, std::size_t) {});
  });
}

}  // namespace

void MeasureLibrary(Table& table) {
  const struct {
    std::size_t Size;
    const char* Text;
    int Turns;
    double LoadLimit;
    double SaveLimit;
  } libraries[] = {{10'000, "10,000", 21, 2, 1.5}, {100'000, "100,000", 9, 2, 2}};
  for (const auto& [size, text, turns, loadLimit, saveLimit] : libraries) {
    const TempFolder folder;
    const ProjectorLibrary library = LibraryOf(size);
    table.Ratio("saving " + std::string(text) + " definitions", "writing and flushing the bytes",
                Saving(folder, library, turns), saveLimit);
    table.Ratio("loading " + std::string(text) + " definitions", "reading and copying",
                Loading(folder, turns), loadLimit);
    if (size == 100'000) {
      table.Value("peak memory while saving 100,000, of the library's",
                  PeakOver(library, [&] { WriteProjectorDatabase(folder.Path(), library); }), "x", 1.2);
    }
  }
  for (const auto& [figure, first] : {std::pair("importing as many equal ones, a definition", 0U),
                                      std::pair("importing as many new ones, a definition", 10'000U)}) {
    const auto a = [first = first] { return ImportTime(10'000, first); };
    const auto b = [first = first] { return ImportTime(1'000, first) * 10; };
    table.Ratio(figure, "of a tenth of the library, x 10", TakeTurns(11, a, b), 1.5);
  }
  const PanelConfiguration room = FullRoom();
  const Turns images = TakeTurns(
      11,
      [&] {
        return ProcessorSeconds([&] {
          for (int i = 0; i < 10'000; ++i) BuildPanelImage(room);
        });
      },
      [] { return 1.0; });
  table.Value("a memory image", Median(images.Ours) * 100, "us", 1);
}

}  // namespace qdm::bench
