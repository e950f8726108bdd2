#include "simulation/panel_faults.h"

#include "panels/frame.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <optional>
#include <system_error>

namespace qdm {
namespace {

using Kind = PanelFault::Kind;
using Target = PanelFault::Target;

struct Form {
  std::string_view Name;
  Kind What;
  Target Where;
  // The numbers behind the name: how many must and how many may be there.
  std::size_t Least;
  std::size_t Most;
};

constexpr std::array<Form, 21> kForms = {{
    {"lose-ident", Kind::Lose, Target::Identification, 0, 1},
    {"lose-ack", Kind::Lose, Target::Acknowledge, 0, 1},
    {"lose-restart", Kind::Lose, Target::RestartAcknowledge, 0, 1},
    {"no-restart-ack", Kind::Lose, Target::RestartAcknowledge, 0, 0},
    {"wrong-ident", Kind::Wrong, Target::Identification, 0, 1},
    {"wrong-ack", Kind::Wrong, Target::Acknowledge, 0, 1},
    {"wrong-restart", Kind::Wrong, Target::RestartAcknowledge, 0, 1},
    {"noise-ident", Kind::Noise, Target::Identification, 0, 1},
    {"noise-ack", Kind::Noise, Target::Acknowledge, 0, 1},
    {"noise-restart", Kind::Noise, Target::RestartAcknowledge, 0, 1},
    {"noise", Kind::Noise, Target::Acknowledge, 0, 1},
    {"long-ident", Kind::Long, Target::Identification, 0, 1},
    {"long-ack", Kind::Long, Target::Acknowledge, 0, 1},
    {"long-restart", Kind::Long, Target::RestartAcknowledge, 0, 1},
    {"late-ident", Kind::Late, Target::Identification, 2, 2},
    {"late-ack", Kind::Late, Target::Acknowledge, 2, 2},
    {"late-restart", Kind::Late, Target::RestartAcknowledge, 2, 2},
    {"drop", Kind::Drop, Target::Record, 1, 2},
    {"corrupt", Kind::Corrupt, Target::Record, 1, 3},
    {"die", Kind::Die, Target::Record, 1, 1},
    {"restart", Kind::Restart, Target::Record, 1, 1},
}};

class FaultText {
 public:
  explicit FaultText(std::string_view text) : text_(text) {
    std::size_t colon = text.find(':');
    name_ = text.substr(0, colon);
    while (colon != std::string_view::npos) {
      text.remove_prefix(colon + 1);
      colon = text.find(':');
      numbers_.push_back(text.substr(0, colon));
    }
  }

  PanelFault Parse() const {
    const Form& form = FindForm();
    if (numbers_.size() < form.Least) Complain("a number is missing behind \"" + std::string(name_) + "\"");
    if (numbers_.size() > form.Most) Complain("there are too many numbers");
    PanelFault fault{.What = form.What, .Where = form.Where};
    ParseCount(fault);
    switch (form.What) {
      case Kind::Late:
        fault.Delay = std::chrono::milliseconds(Number(1, 0, 60'000, "a delay"));
        break;
      case Kind::Corrupt:
        fault.Mask = static_cast<std::uint8_t>(Number(2, 1, 255, "a mask", fault.Mask));
        [[fallthrough]];
      case Kind::Drop:
        fault.Byte = Number(1, 0, kLongestRecord - 1, "a byte of a record", fault.Byte);
        break;
      default:
        break;
    }
    return fault;
  }

 private:
  static constexpr int kHighestCount = 1'000'000;

  [[noreturn]] void Complain(const std::string& why) const {
    throw std::invalid_argument("fault \"" + std::string(text_) + "\": " + why);
  }
  const Form& FindForm() const {
    const auto found =
        std::find_if(kForms.begin(), kForms.end(), [this](const Form& form) { return form.Name == name_; });
    if (found != kForms.end()) return *found;
    std::string names;
    for (const Form& form : kForms) names += (names.empty() ? "" : ", ") + std::string(form.Name);
    Complain("unknown; there are " + names);
  }
  void ParseCount(PanelFault& fault) const {
    fault.Every = numbers_.empty() || numbers_[0].starts_with('%');
    if (numbers_.empty()) return;
    const std::string_view digits = numbers_[0].substr(fault.Every ? 1 : 0);
    fault.Number = Checked(digits, 1, kHighestCount, "a count");
  }
  int Number(std::size_t index, int lowest, int highest, const char* what, int without = 0) const {
    return index < numbers_.size() ? Checked(numbers_[index], lowest, highest, what) : without;
  }
  int Checked(std::string_view digits, int lowest, int highest, const char* what) const {
    int number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size() || number < lowest || number > highest) {
      Complain("\"" + std::string(digits) + "\" is not " + what + ", " + std::to_string(lowest) + ".." +
               std::to_string(highest));
    }
    return number;
  }

  std::string_view text_;
  std::string_view name_;
  std::vector<std::string_view> numbers_;
};

}  // namespace

PanelFault ParsePanelFault(std::string_view text) { return FaultText(text).Parse(); }

}  // namespace qdm
