#include "serial_strings/sum_search.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <set>

namespace qdm {
namespace {

// A rule is believed when it explains this many bits more than the choice among all rules could have: chance
// makes less than one in ten thousand families look so.
constexpr double kBitsToBelieve = 14;
constexpr std::size_t kFewestMembers = 3;
// With fewer members a rule that one of them breaks proves nothing.
constexpr std::size_t kFewestWithOutlier = 4;

constexpr std::size_t kFarthestPlace = 3;
constexpr std::size_t kLatestStart = 4;
constexpr std::size_t kMostUncovered = 2;

constexpr std::array kByteForms = {SumForm{SumForm::Digits::Raw}, SumForm{SumForm::Digits::UpperCase},
                                   SumForm{SumForm::Digits::LowerCase}};
constexpr std::array kWordForms = {SumForm{SumForm::Digits::Raw}, SumForm{SumForm::Digits::Raw, true},
                                   SumForm{SumForm::Digits::UpperCase}, SumForm{SumForm::Digits::LowerCase}};

// In bits: how special the rule is among all that are tried.
double CostOf(const SumRule& rule) {
  double cost = rule.Method.Kind == SumKind::Crc ? 7 : 3;
  if (rule.Method.Kind == SumKind::Crc && (rule.Method.Start != 0 || rule.Method.FinalXor != 0)) cost += 1;
  if (rule.Method.Bits == 16) cost += 1;
  cost += rule.Form.As == SumForm::Digits::Raw ? (rule.Form.LowFirst ? 2 : 1) : 2;
  cost += rule.InFront ? 4 : rule.Place == 0 ? 1 : 2.5;
  cost += rule.InFront ? 0 : rule.Start == 0 ? 1 : rule.Start == 1 ? 1.5 : 3;
  return cost + (rule.Uncovered == 0 ? 0.5 : 2);
}

// How much it says that each of these bytes has exactly the value that a rule gives, judged by how far they
// spread; a byte that never varies says it once.
double BitsOf(const std::vector<std::uint8_t>& values) {
  const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
  const auto count = static_cast<double>(values.size());
  constexpr double kBitsOfByte = 8;
  if (*lowest == *highest) return *lowest == 0 ? kBitsOfByte / 4 : kBitsOfByte;
  const double spread = (*highest - *lowest + 1) * (count + 1) / (count - 1);
  return count * (spread > 0x60 ? kBitsOfByte : std::log2(spread));
}

double BitsOfChoice(std::size_t outliers, std::size_t members) {
  double bits = 0;
  for (std::size_t i = 0; i < outliers; ++i)
    bits += std::log2(static_cast<double>(members - i) / static_cast<double>(i + 1));
  return bits;
}

class Search {
 public:
  explicit Search(const std::vector<Bytes>& members)
      : members_(members),
        mostOutliers_(members.size() < kFewestWithOutlier ? 0
                                                          : std::max<std::size_t>(1, members.size() / 4)) {}

  std::optional<FoundSum> Run() {
    for (const SumForm& form : kByteForms) TryForm(form, 8);
    for (const SumForm& form : kWordForms) TryForm(form, 16);
    return best_;
  }

 private:
  void TryForm(const SumForm& form, int bits) {
    SumRule rule;
    rule.Form = form;
    rule.Method.Bits = bits;
    for (const bool inFront : {false, true}) {
      for (std::size_t place = 0; place <= kFarthestPlace; ++place) {
        rule.InFront = inFront;
        rule.Place = place;
        TryPlace(rule);
      }
    }
  }

  void TryPlace(SumRule rule) {
    rule.Start = rule.InFront ? rule.Place + rule.Width() : 0;
    rule.Uncovered = 0;
    if (!TakeValues(rule)) return;
    const std::size_t lastStart = rule.InFront ? rule.Start : kLatestStart;
    for (std::size_t start = rule.Start; start <= lastStart; ++start) {
      for (std::size_t uncovered = 0; uncovered <= kMostUncovered; ++uncovered) {
        rule.Start = start;
        rule.Uncovered = uncovered;
        TryRange(rule);
      }
    }
  }

  // What stands at the place, in that form. False when it cannot be a sum: no such digits, or hardly varying.
  bool TakeValues(const SumRule& rule) {
    values_.assign(members_.size(), std::nullopt);
    std::set<std::uint16_t> different;
    std::size_t none = 0;
    for (std::size_t i = 0; i < members_.size(); ++i) {
      if (const auto parts = PartsOf(rule, members_[i].size()))
        values_[i] = Read(ByteView(members_[i]).subspan(parts->SumAt, rule.Width()), rule.Form);
      if (values_[i]) different.insert(*values_[i]);
      if (!values_[i] && ++none > mostOutliers_) return false;
    }
    return different.size() > 1;
  }

  void TryRange(SumRule& rule) {
    ranges_.assign(members_.size(), ByteView());
    for (std::size_t i = 0; i < members_.size(); ++i) {
      if (const auto parts = PartsOf(rule, members_[i].size()))
        ranges_[i] = ByteView(members_[i]).subspan(parts->CoverFrom, parts->CoverTo - parts->CoverFrom);
    }
    costOfRange_ = CostOfRange(rule);
    const int bits = rule.Method.Bits;
    for (const SumMethod& method : SumMethods()) {
      if (method.Bits != bits) continue;
      rule.Method = method;
      TryRule(rule);
    }
  }

  void TryRule(const SumRule& rule) {
    std::size_t outliers = 0;
    keeps_.assign(members_.size(), false);
    keepsLow_ = keeps_;
    for (std::size_t i = 0; i < members_.size(); ++i) {
      if (values_[i] && !ranges_[i].empty()) {
        const unsigned wrong = unsigned{SumOf(rule.Method, ranges_[i])} ^ *values_[i];
        keeps_[i] = wrong == 0;
        keepsLow_[i] = (wrong & 0xFF) == 0;
      }
      if (!keeps_[i] && ++outliers > mostOutliers_) return;
    }
    const std::optional<double> evidence = Evidence(rule.Method);
    if (!evidence) return;
    const double margin = *evidence - CostOf(rule) - costOfRange_ - BitsOfChoice(outliers, members_.size());
    if (margin < kBitsToBelieve || (best_ && margin <= bestMargin_)) return;
    bestMargin_ = margin;
    best_ = FoundSum{rule, keeps_};
  }

  // Of the members that keep the rule. The same covered bytes have the same sum: they prove nothing twice.
  // The low byte of a wide sum counts where only the high one is wrong, or else the rule would lose against
  // that of the low byte alone; only where the high byte varies at all, and is no byte of the frame.
  std::optional<double> Evidence(const SumMethod& method) const {
    std::set<Bytes> proofs;
    std::vector<std::uint8_t> low;
    std::vector<std::uint8_t> lowOnly;
    std::vector<std::uint8_t> high;
    for (std::size_t i = 0; i < members_.size(); ++i) {
      if (!keepsLow_[i] || !proofs.emplace(ranges_[i].begin(), ranges_[i].end()).second) continue;
      (keeps_[i] ? low : lowOnly).push_back(static_cast<std::uint8_t>(*values_[i] & 0xFF));
      if (keeps_[i]) high.push_back(static_cast<std::uint8_t>(*values_[i] >> 8));
    }
    if (low.size() < kFewestMembers) return std::nullopt;
    if (method.Bits == 8) return BitsOf(low);
    const bool varies = std::adjacent_find(high.begin(), high.end(), std::not_equal_to<>()) != high.end();
    if (method.Kind != SumKind::Crc && varies) low.insert(low.end(), lowOnly.begin(), lowOnly.end());
    return BitsOf(low) + BitsOf(high);
  }

  // Bytes that vary and that no sum covers are rare, in a frame: they are rather a part of the sum.
  double CostOfRange(const SumRule& rule) const {
    double cost = 0;
    for (std::size_t i = 0; i < rule.Uncovered; ++i) cost += Varies(rule, i, true) ? 8 : 1;
    for (std::size_t i = 0; !rule.InFront && i < rule.Place; ++i) cost += Varies(rule, i, false) ? 8 : 0;
    return cost;
  }
  // The i-th byte before the sum, or from the end.
  bool Varies(const SumRule& rule, std::size_t i, bool beforeSum) const {
    std::set<std::uint8_t> different;
    for (const Bytes& member : members_) {
      const std::size_t behind = i + (beforeSum && !rule.InFront ? rule.Place + rule.Width() : 0);
      if (behind < member.size()) different.insert(member[member.size() - 1 - behind]);
    }
    return different.size() > 1;
  }

  const std::vector<Bytes>& members_;
  const std::size_t mostOutliers_;
  std::vector<std::optional<std::uint16_t>> values_;
  std::vector<ByteView> ranges_;
  std::vector<bool> keeps_;
  std::vector<bool> keepsLow_;  // the sum's low byte is right
  double costOfRange_ = 0;
  double bestMargin_ = 0;
  std::optional<FoundSum> best_;
};

}  // namespace

std::optional<SumParts> PartsOf(const SumRule& rule, std::size_t length) {
  const std::size_t width = rule.Width();
  if (length < rule.Place + width) return std::nullopt;
  SumParts parts;
  parts.SumAt = rule.InFront ? rule.Place : length - rule.Place - width;
  const std::size_t end = rule.InFront ? length : parts.SumAt;
  parts.CoverFrom = rule.Start;
  if (end < rule.Uncovered || end - rule.Uncovered <= parts.CoverFrom) return std::nullopt;
  parts.CoverTo = end - rule.Uncovered;
  return parts;
}

std::optional<Bytes> ComputedSum(const SumRule& rule, ByteView command) {
  const auto parts = PartsOf(rule, command.size());
  if (!parts) return std::nullopt;
  const ByteView covered = command.subspan(parts->CoverFrom, parts->CoverTo - parts->CoverFrom);
  return Written(SumOf(rule.Method, covered), rule.Form, rule.Method.Bits);
}

std::optional<FoundSum> FindSum(const std::vector<Bytes>& members) {
  if (members.size() < kFewestMembers) return std::nullopt;
  return Search(members).Run();
}

}  // namespace qdm
