// The selector with 10,000 models: shown, filtered key by key, closed. What the processor does counts, and
// for the closing also the disk.
#include "app/qt_prompts.h"
#include "forms/controls/filter_box.h"
#include "forms/projectors/projector_selector.h"
#include "forms/shared/globals.h"
#include "library_of.h"
#include "measure.h"
#include "projectors/library_file.h"
#include "projectors/projector_files.h"
#include "support/temp_folder.h"

#include <QApplication>

#include <algorithm>
#include <string>
#include <vector>

namespace qdm::bench {
namespace {

constexpr std::size_t kModels = 10'000;
const QString kTyped = QStringLiteral("model 77");

class OpenSelector {
 public:
  explicit OpenSelector(Globals& globals) : form_(globals, prompts_, nullptr) {
    form_.show();
    QApplication::setActiveWindow(&form_);  // as a window manager does
    Paint();
  }
  double KeyTyped(const QString& text) {
    return ProcessorSeconds([&] {
      form_.findChild<FilterBox*>()->setText(text);
      Paint();
    });
  }
  void Close() { form_.close(); }

 private:
  void Paint() {
    QCoreApplication::processEvents();
    form_.repaint();
  }

  QtPrompts prompts_;
  ProjectorSelector form_;
};

// Of each text in turn, and of the box being emptied again: the slowest one's median.
double SlowestKey(OpenSelector& selector) {
  std::vector<std::vector<double>> keys(static_cast<std::size_t>(kTyped.size()) + 1);
  for (int round = 0; round < 11; ++round) {
    for (std::size_t length = 1; length < keys.size(); ++length)
      keys[length].push_back(selector.KeyTyped(kTyped.left(static_cast<qsizetype>(length))));
    keys[0].push_back(selector.KeyTyped({}));
  }
  std::vector<double> medians;
  for (const std::vector<double>& key : keys) medians.push_back(Median(key));
  return *std::max_element(medians.begin(), medians.end());
}

void MeasureFilter(Table& table) {
  for (const auto& [manufacturers, figure, limit] :
       {std::tuple(kModels, "slowest key in the filter, 10,000 manufacturers", 16.0),
        std::tuple(std::size_t{200}, "slowest key in the filter, 200 manufacturers", 5.0)}) {
    Globals globals;
    globals.ProjectorDatabase = LibraryOf(kModels, manufacturers);
    OpenSelector selector(globals);
    table.Value(figure, SlowestKey(selector) * 1000, "ms", limit);
  }
}

// Closing saves, changed or not.
void MeasureClosing(Table& table) {
  const TempFolder folder;
  Globals globals;
  globals.DataFolder = folder.Path();
  globals.ProjectorDatabase = LibraryOf(kModels, kModels);
  globals.ProjectorDatabase.MarkUnchanged(WriteProjectorDatabase(folder.Path(), globals.ProjectorDatabase));
  const Bytes stored = EncodeDefinitions(globals.ProjectorDatabase.Elements());
  const auto close = [&](const auto& seconds) {
    OpenSelector selector(globals);
    return seconds([&] { selector.Close(); });
  };
  table.Ratio("closing the selector, 10,000 manufacturers", "writing and flushing the bytes",
              TakeTurns(
                  21, [&] { return close(WallSeconds); },
                  [&] { return WallSeconds([&] { WriteAndFlush(folder / "plain", stored); }); }),
              1.5);
  const Turns besides = TakeTurns(
      11, [&] { return close(ProcessorSeconds); },
      [&] {
        return ProcessorSeconds([&] { SaveProjectorDatabase(folder.Path(), globals.ProjectorDatabase); });
      });
  table.Value("closing the selector, all but saving", (Median(besides.Ours) - Median(besides.Theirs)) * 1000,
              "ms", 10);
}

}  // namespace

void MeasureSelector(Table& table) {
  Globals globals;
  globals.ProjectorDatabase = LibraryOf(kModels);
  std::vector<double> shown;
  for (int i = 0; i < 11; ++i)
    shown.push_back(ProcessorSeconds([&] { const OpenSelector selector(globals); }));
  table.Value("showing the selector, 10,000 models", Median(shown) * 1000, "ms", 100);
  MeasureFilter(table);
  MeasureClosing(table);
}

}  // namespace qdm::bench
