#include "panels/image_explanation.h"

#include "panels/image_layout.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

namespace qdm {
namespace {

class Explanation {
 public:
  void AddUnused(std::size_t end) { Add(end - at_, "not used", ""); }
  void Add(std::size_t length, std::string meaning, std::string fields) {
    if (length == 0) return;
    parts_.push_back({at_, length, std::move(meaning), std::move(fields)});
    at_ += length;
  }
  void AddRows(ImageLayout layout) {
    std::vector<ImageRow> rows(layout.begin(), layout.end());
    std::sort(rows.begin(), rows.end(),
              [](const ImageRow& a, const ImageRow& b) { return a.Offset < b.Offset; });
    for (const auto& [offset, field] : rows) {
      AddUnused(offset);
      Add(field.Width, std::string(field.Meaning), std::string(field.Sources));
    }
    AddUnused(kStringTableStart);
  }
  void AddSlot(const ProjectorDefinition& projector, std::size_t slot) {
    const std::string name(CommandSlotNames[slot]);
    const std::string index = "[" + std::to_string(slot) + "]";
    const std::string available = "Projector.Available" + index;
    const std::string string = "Projector.Strings" + index;
    if (projector.Available[slot] == 0) return Add(1, name + ": not in use", available);
    Add(1, name + ": length", string + ".Count, " + available);
    if (SlotHasIgnoreMask(slot)) Add(kIgnoreMaskBytes, name + ": ignored bytes", string + ".Kinds");
    Add(projector.Strings[slot].BytesInUse(), name + ": " + CompactText(projector.Strings[slot]),
        string + ".Values");
  }
  std::vector<ImagePart> Take() {
    AddUnused(kPanelImageSize);
    return std::move(parts_);
  }

 private:
  std::size_t at_ = 0;
  std::vector<ImagePart> parts_;
};

}  // namespace

std::vector<ImagePart> ExplainImage(const PanelConfiguration& configuration) {
  Explanation explanation;
  explanation.AddRows(LayoutOf(configuration.ControllerType));
  for (const std::size_t slot : CommandSlotOrder) explanation.AddSlot(configuration.Projector, slot);
  return explanation.Take();
}

}  // namespace qdm
