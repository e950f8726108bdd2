// The program's start as the user sees it: from the spawn of the process to the first picture in a window, on
// a real window system, against a program whose window draws one label.
#include "first_image.h"
#include "library_of.h"
#include "measure.h"
#include "processes.h"
#include "projectors/library_file.h"
#include "support/temp_folder.h"

#include <string>
#include <vector>

namespace qdm::bench {
namespace {

constexpr int kStarts = 25;

double TimeOfStart(FirstImage& image, const std::vector<std::string>& command) {
  image.Forget();
  pid_t process = 0;
  const double seconds = WallSeconds([&] {
    process = Start(command);
    image.Wait();
  });
  End(process);
  return seconds;
}

}  // namespace

void MeasureStart(Table& table) {
  FirstImage image;
  const struct {
    std::size_t Definitions;
    const char* Figure;
    double Limit;
  } figures[] = {{1'000, "start to the first image, 1,000 definitions", 1.5},
                 {10'000, "start to the first image, 10,000 definitions", 1.8}};
  for (const auto& [definitions, figure, limit] : figures) {
    const TempFolder data;
    WriteProjectorDatabase(data.Path(), LibraryOf(definitions));
    table.Ratio(figure, "window with a label",
                TakeTurns(
                    kStarts,
                    [&] {
                      return TimeOfStart(image, {QDM_EDITOR, "--data", data.Path().string()});
                    },
                    [&] { return TimeOfStart(image, {QDM_LABEL_WINDOW}); }),
                limit);
  }
}

}  // namespace qdm::bench
