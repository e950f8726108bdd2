#include "manuals/chains.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace qdm {
namespace {

using Text = std::u16string_view;

enum class ColumnHeading { Other, Labels, Codes };

ColumnHeading HeadingOf(Text heading) {
  constexpr Text kLabels[] = {u"function", u"functions", u"item",     u"items",  u"option", u"operation",
                              u"action",   u"names",     u"funktion", u"button", u"key",    u"description",
                              u"fonction", u"funcion",   u"funzione", u"details"};
  constexpr Text kCodes[] = {u"command", u"commands", u"code",       u"codes",    u"ascii",  u"hex",
                             u"string",  u"send",     u"ascii code", u"hex code", u"befehl", u"hexadecimal",
                             u"data",    u"comando",  u"commande",   u"character"};
  const std::u16string folded = FoldLetters(heading);
  const auto among = [&](const auto& names) {
    return std::find(std::begin(names), std::end(names), folded) != std::end(names);
  };
  return among(kLabels) ? ColumnHeading::Labels : among(kCodes) ? ColumnHeading::Codes : ColumnHeading::Other;
}

// Where the two headings right before a chain put the labels; nothing where there are others than two.
std::optional<Side> SideByHeadings(const ManualPage& page, const std::vector<Piece>& pieces,
                                   std::size_t first) {
  constexpr std::size_t kTwo = 2;
  if (first < kTwo || (first > kTwo && pieces[first - 3].Heading)) return std::nullopt;
  if (!pieces[first - 2].Heading || !pieces[first - 1].Heading) return std::nullopt;
  const ColumnHeading above = HeadingOf(page.At(pieces[first - 2].Where));
  const ColumnHeading below = HeadingOf(page.At(pieces[first - 1].Where));
  if (above == below || above == ColumnHeading::Other || below == ColumnHeading::Other) return std::nullopt;
  return above == ColumnHeading::Labels ? Side::Above : Side::Below;
}

class ChainFinder {
 public:
  ChainFinder(const ManualPage& page, const std::vector<Code>& codes, const std::vector<Piece>& pieces)
      : page_(page), codes_(codes), pieces_(pieces) {}

  Chains Find() {
    found_.Sides.resize(pieces_.size());
    found_.Clear.resize(pieces_.size());
    std::size_t from = 0;
    std::size_t last = 0;
    for (std::size_t at = 1; at < pieces_.size(); ++at) {
      if (pieces_[at].Bracketed && !Breaks(last)) continue;
      const bool turns = !Breaks(at) && !Breaks(last) && pieces_[at].IsText() != pieces_[last].IsText() &&
                         LineOf(last) != pieces_[at].Where.Line;
      if (!turns) {
        Close(from, last);
        from = at;
      }
      last = at;
    }
    if (!pieces_.empty()) Close(from, last);
    return std::move(found_);
  }

 private:
  bool Breaks(std::size_t at) const { return pieces_[at].Sentence || pieces_[at].Heading; }
  // Where the piece ends.
  std::size_t LineOf(std::size_t at) const {
    return pieces_[at].IsText() ? pieces_[at].Where.Line : codes_[pieces_[at].Code].End().Line;
  }

  // An end counts where the table ends, not where a label is lost.
  void Close(std::size_t first, std::size_t last) {
    constexpr std::size_t kShortest = 5;
    if (last - first < 2) return;
    const bool startCounts = first == 0 || Breaks(first - 1);
    const bool endCounts = last + 1 == pieces_.size() || Breaks(last + 1);
    const Side byStart = pieces_[first].IsText() ? Side::Above : Side::Below;
    const Side byEnd = pieces_[last].IsText() ? Side::Below : Side::Above;
    if (startCounts) ++found_.Votes[static_cast<std::size_t>(byStart)];
    if (endCounts) ++found_.Votes[static_cast<std::size_t>(byEnd)];
    const std::optional<Side> byHeadings = SideByHeadings(page_, pieces_, first);
    const bool headed = byHeadings == byStart && (!endCounts || byEnd == byStart);
    if (last - first + 1 < kShortest || (!startCounts && !endCounts)) return;
    if (startCounts && endCounts && byStart != byEnd) return;
    for (std::size_t at = first; at <= last; ++at) {
      found_.Sides[at] = startCounts ? byStart : byEnd;
      found_.Clear[at] = headed || (startCounts && endCounts && !byHeadings);
    }
  }

  const ManualPage& page_;
  const std::vector<Code>& codes_;
  const std::vector<Piece>& pieces_;
  Chains found_;
};

}  // namespace

Chains FindChains(const ManualPage& page, const std::vector<Code>& codes, const std::vector<Piece>& pieces) {
  return ChainFinder(page, codes, pieces).Find();
}

}  // namespace qdm
