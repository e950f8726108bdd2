#include "manuals/doubts.h"

#include "base/words.h"
#include "manuals/code_sums.h"
#include "serial_strings/sum_search.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>

namespace qdm {
namespace {

using Text = std::u16string_view;

void Doubt(Finding& finding, const char* why) {
  finding.Settled = false;
  finding.Doubt = why;
}

// One of the words where a word begins.
bool SaysWord(const ManualPage& page, std::initializer_list<Text> words) {
  const Text folded = page.Folded;
  for (const Text word : words) {
    for (std::size_t at = folded.find(word); at != Text::npos; at = folded.find(word, at + 1)) {
      if (at == 0 || !IsWordPart(folded[at - 1])) return true;
    }
  }
  return false;
}

bool InNumbers(const Finding& finding) {
  constexpr std::size_t kShortest = 4;
  return finding.What.How == Notation::Hexadecimal && !finding.What.Broken &&
         finding.What.Bytes.size() >= kShortest;
}

// Which of the findings keep the check sum that most of them keep; empty where there is none.
std::vector<bool> KeepSimpleSum(const std::vector<Finding>& findings) {
  constexpr std::size_t kFewest = 3;
  for (const CheckSum check : kCheckSums) {
    std::vector<bool> right;
    std::size_t counted = 0;
    std::size_t passed = 0;
    for (const Finding& finding : findings) {
      right.push_back(IsRight(check, Values(finding.What.Bytes)));
      if (!InNumbers(finding)) continue;
      ++counted;
      if (right.back()) ++passed;
    }
    if (passed >= kFewest && passed * 10 >= counted * 6) return right;
  }
  return {};
}

// The same for sums of any kind at any place, CRC-16 among them.
std::vector<bool> KeepAnySum(const std::vector<Finding>& findings) {
  constexpr std::size_t kMost = 32;  // more prove nothing more
  std::vector<Bytes> members;
  for (const Finding& finding : findings) {
    Bytes bytes = Values(finding.What.Bytes);
    const bool known = std::find(members.begin(), members.end(), bytes) != members.end();
    if (InNumbers(finding) && !known && members.size() < kMost) members.push_back(std::move(bytes));
  }
  const auto found = FindSum(members);
  if (!found) return {};
  const auto keeps = [&](const Finding& finding) {
    const Bytes bytes = Values(finding.What.Bytes);
    const auto parts = PartsOf(found->Rule, bytes.size());
    if (!parts) return false;
    const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(parts->SumAt);
    const Bytes sum(at, at + static_cast<std::ptrdiff_t>(found->Rule.Width()));
    return sum == ComputedSum(found->Rule, bytes);
  };
  std::vector<bool> right(findings.size());
  std::transform(findings.begin(), findings.end(), right.begin(), keeps);
  return right;
}

// Where most codes hold their check sum, one that does not is misprinted or only a part. A page that speaks
// of a check sum which no code holds has it left out.
void HeedCheckSums(const ManualPage& page, std::vector<Finding>& findings) {
  const bool named = SaysWord(
      page, {u"checksum", u"check sum", u"chksum", u"crc", u"bcc", u"lrc", u"prufsumme", u"somme de contr",
             u"suma de control", u"suma de verif", u"校验和", u"チェックサム", u"checkbyte"});
  std::vector<bool> right = KeepSimpleSum(findings);
  if (right.empty() && named) right = KeepAnySum(findings);
  const bool spoken = right.empty() && named;
  for (std::size_t i = 0; i < findings.size(); ++i) {
    Finding& finding = findings[i];
    const bool numbers = finding.What.How == Notation::Hexadecimal;
    if (!right.empty() && numbers) {
      finding.What.Proven = right[i];
      if (!right[i]) Doubt(finding, "its check sum is wrong");
    } else if (spoken && !finding.What.Proven && !finding.What.Computed &&
               (numbers ? !finding.What.Confirmed : !finding.What.Marked)) {
      Doubt(finding, "the page speaks of a check sum that is not found in it");
    }
  }
}

// "a colon": the sign has its name.
bool NamesSign(Text folded, char16_t sign) {
  constexpr std::pair<Text, char16_t> kNames[] = {
      {u"colon", u':'},       {u"asterisk", u'*'},    {u"star", u'*'},  {u"hash", u'#'},
      {u"pound", u'#'},       {u"number sign", u'#'}, {u"tilde", u'~'}, {u"percent", u'%'},
      {u"exclamation", u'!'}, {u"dollar", u'$'},      {u"slash", u'/'}, {u"at sign", u'@'},
      {u"bracket", u'('},     {u"doppelpunkt", u':'}, {u"raute", u'#'}, {u"stern", u'*'},
      {u"deux-points", u':'}, {u"dieze", u'#'},       {u"diese", u'#'}, {u"dos puntos", u':'},
      {u"asterisco", u'*'},   {u"due punti", u':'}};
  return std::any_of(std::begin(kNames), std::end(kNames), [&](const auto& name) {
    return name.second == sign && folded.find(name.first) != Text::npos;
  });
}

// "Each command begins with #": characters that begin otherwise lack it.
void DoubtMissingStart(const ManualPage& page, std::vector<Finding>& findings) {
  constexpr std::size_t kReach = 30;
  const Text folded = page.Folded;
  for (const Text phrase :
       {u"begins with",   u"begin with",   u"starts with",     u"start with",     u"preceded by",
        u"prefix",        u"start code",   u"start character", u"start byte",     u"leading",
        u"beginnt mit",   u"beginnen mit", u"commence par",    u"commencent par", u"comienza con",
        u"comienzan con", u"empieza con",  u"empiezan con",    u"inizia con",     u"iniziano con"}) {
    const std::size_t at = folded.find(phrase);
    if (at == Text::npos) continue;
    const Text behind = folded.substr(at + Text(phrase).size(), kReach);
    const auto named = [behind](const Finding& finding) {
      if (finding.What.Bytes.front().Value < 0x20) return true;
      const char16_t first = FoldLetter(finding.What.Bytes.front().Value);
      if (NamesSign(behind, first)) return true;
      for (std::size_t i = 0; i < behind.size(); ++i) {
        const bool alone = (i == 0 || !IsWordPart(behind[i - 1])) &&
                           (i + 1 >= behind.size() || !IsWordPart(behind[i + 1]) || !IsWordPart(first));
        if (behind[i] == first && alone) return true;
      }
      return false;
    };
    for (Finding& finding : findings) {
      const bool printed = finding.What.Marked || finding.What.How == Notation::Hexadecimal;
      if (!finding.What.Bytes.empty() && !printed && !named(finding))
        Doubt(finding, "the page speaks of a beginning that it does not have");
    }
  }
}

// Pairs of digits alone on a page that speaks of decimal numbers.
void DoubtDecimals(const ManualPage& page, std::vector<Finding>& findings) {
  bool decimal = false;
  for (const std::u16string_view word : {u"decimal", u"dezimal", u"十进制"}) {
    for (std::size_t at = page.Folded.find(word); at != std::u16string::npos;
         at = page.Folded.find(word, at + 1)) {
      const std::u16string_view before = std::u16string_view(page.Folded).substr(at < 4 ? 0 : at - 4, 4);
      decimal |= before.find(u"hexa") == std::u16string_view::npos;
    }
  }
  if (!decimal) return;
  const bool alone = page.Folded.find(u"hex") == std::u16string::npos;
  const auto decimalDigits = [](const Finding& finding) {
    return std::all_of(finding.What.Bytes.begin(), finding.What.Bytes.end(),
                       [](const CodeByte& byte) { return byte.Value < 0x9A && (byte.Value & 0x0F) < 10; });
  };
  for (Finding& finding : findings) {
    if (finding.What.How != Notation::Hexadecimal || finding.What.Marked || !decimalDigits(finding)) continue;
    for (CodeByte& byte : finding.What.Bytes) {
      const int digits = (byte.Value >> 4) * 10 + (byte.Value & 0x0F);
      if (alone) byte.Value = static_cast<std::uint8_t>(digits);
    }
    finding.Settled = false;
    finding.Doubt =
        alone ? Marked("the numbers are read as decimal") : Marked("the numbers could be decimal");
  }
}

// Many numbers without a label: the page is torn, and what has a label may be a part only.
void DoubtTornPages(std::vector<Finding>& findings) {
  std::size_t labelled = 0;
  std::size_t orphans = 0;
  const auto counts = [](const Finding& finding) {
    return finding.What.How == Notation::Hexadecimal && !finding.What.Proven;
  };
  for (const Finding& finding : findings) {
    if (counts(finding)) ++(finding.Label.empty() ? orphans : labelled);
  }
  if (orphans * 3 < labelled || orphans == 0) return;
  for (Finding& finding : findings) {
    if (!counts(finding) || finding.What.Confirmed) continue;
    finding.Settled = false;
    finding.Doubt = Marked("many bytes on the page have no label: it may be only a part of the command");
  }
}

// What stands right before a text: signs and digits, "* 00" before "PW 1".
bool IsLedThere(Text line, std::size_t at) {
  if (at > 0 && line[at - 1] == u' ') --at;
  std::size_t from = at;
  while (from > 0 && !IsBlank(line[from - 1])) --from;
  const Text before = line.substr(from, at - from);
  constexpr Text kMarks = u":=\"'(-.,;|/+";  // these lead over to a command
  return !before.empty() && kMarks.find(before.back()) == Text::npos &&
         std::none_of(before.begin(), before.end(), [](char16_t c) { return IsLetter(c) || c > 0x7F; });
}

// Characters of a table that an example on the page gives with something before them.
void DoubtLedExamples(const ManualPage& page, std::vector<Finding>& findings) {
  constexpr std::size_t kShortest = 3;
  const auto bare = [](const Finding& finding) {
    return finding.What.How == Notation::Characters && !finding.What.Marked && !finding.What.Confirmed;
  };
  const auto ledElsewhere = [&](const Finding& finding) {
    const Span& where = finding.What.Begin();
    const Text text = page.At(where);
    if (!bare(finding) || text.size() < kShortest) return false;
    for (std::size_t line = 0; line < page.Lines.size(); ++line) {
      const Text other = page.Lines[line];
      for (std::size_t at = other.find(text); at != Text::npos; at = other.find(text, at + 1)) {
        const std::size_t end = at + text.size();
        const bool whole = end == other.size() || !IsWordPart(other[end]);
        if (line != where.Line && whole && IsLedThere(other, at)) return true;
      }
    }
    return false;
  };
  constexpr std::size_t kMost = 200;  // beyond that a page is no table
  if (findings.size() > kMost || std::none_of(findings.begin(), findings.end(), ledElsewhere)) return;
  for (Finding& finding : findings) {
    if (bare(finding)) Doubt(finding, Marked("an example on the page has something before such characters"));
  }
}

}  // namespace

void DoubtFindings(const ManualPage& page, std::vector<Finding>& findings) {
  DoubtTornPages(findings);
  HeedCheckSums(page, findings);
  DoubtDecimals(page, findings);
  DoubtMissingStart(page, findings);
  DoubtLedExamples(page, findings);
}

}  // namespace qdm
