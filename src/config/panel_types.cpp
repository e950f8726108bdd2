#include "config/panel_types.h"

#include <algorithm>
#include <cctype>

namespace qdm {
namespace {

constexpr bool StandsByCode() {
  for (std::size_t i = 0; i < PanelTypes.size(); ++i) {
    if (PanelTypes[i].Code != static_cast<int>(i)) return false;
  }
  return true;
}
static_assert(StandsByCode());

std::string Plain(std::string_view name) {
  std::string plain;
  for (const char c : name) {
    if (c != ' ') plain += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return plain;
}

}  // namespace

const PanelType* PanelTypeOf(int controllerType) {
  const bool known = controllerType >= 0 && controllerType < static_cast<int>(PanelTypes.size());
  return known ? &PanelTypes[static_cast<std::size_t>(controllerType)] : nullptr;
}

const PanelType* PanelTypeOfModel(int modelCode) { return PanelTypeOf(modelCode - 1); }

const PanelType* PanelTypeNamed(std::string_view name) {
  const auto type =
      std::find_if(PanelTypes.begin(), PanelTypes.end(),
                   [plain = Plain(name)](const PanelType& t) { return Plain(t.ShortName) == plain; });
  return type != PanelTypes.end() ? &*type : nullptr;
}

std::string CaptionsOfPanelTypes(std::string_view beforeLast) {
  std::string captions;
  for (const PanelType& type : PanelTypes) {
    if (!captions.empty()) captions += &type == &PanelTypes.back() ? beforeLast : ", ";
    captions += type.Caption;
  }
  return captions;
}

bool IsAmplifier(int controllerType) {
  const PanelType* type = PanelTypeOf(controllerType);
  return type != nullptr && type->Kind == DeviceKind::Amplifier;
}

MemoryLayout MemoryLayoutOf(int controllerType) {
  const PanelType* type = PanelTypeOf(controllerType);
  return type != nullptr ? type->Layout : MemoryLayout::Qdm;
}

}  // namespace qdm
