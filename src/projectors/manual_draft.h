// The strings that could be taken out of a manual's text, and what somebody decided about each. The text may
// be read again at any time, with another page behind it or a word put right: a decision lasts as long as the
// text still gives its bytes, and what was marked as long as it stands there.
#pragma once

#include "manuals/manual_reading.h"
#include "projectors/manual_definition.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

struct ManualCandidate {
  SerialString String;
  std::string Function;  // in the page's own words, UTF-8; may be empty
  std::string ReadAs;
  std::vector<ManualRange> Ranges;
};

// A string of the definition that has a candidate.
struct ManualRow {
  std::size_t Slot = 0;
  std::vector<ManualCandidate> Candidates;  // the likeliest first, each with other bytes
  std::size_t Chosen = 0;
  bool Ticked = false;
  bool Marked = false;  // the first candidate is what somebody marked
  bool Sure = false;    // of the first candidate
  std::string Doubt;    // why it is not: a sentence without its end; may be empty

  const ManualCandidate& Candidate() const { return Candidates[Chosen]; }
};

// Something in the text that was understood: a command, or the line settings.
struct ManualPiece {
  ManualRange Range;
  std::optional<std::size_t> Slot;
  std::string Meaning;  // "Power ON": PON,CRc (50 4F 4E 0D)
};

class ManualDraft {
 public:
  void Read(std::u16string_view text);
  const ManualReading& Reading() const { return reading_; }

  // What the panel sends first, then what it receives.
  const std::vector<ManualRow>& Rows() const { return rows_; }
  const ManualRow* RowOf(std::size_t slot) const;
  // Everything that was understood; of two pieces at one place the first one counts.
  const std::vector<ManualPiece>& Pieces() const { return pieces_; }
  // The commands without a candidate that every definition must have, and the usual further ones.
  std::vector<std::size_t> NotFound() const;

  void Tick(std::size_t slot, bool ticked);
  // Takes another of the row's candidates, and ticks it.
  void Choose(std::size_t slot, std::size_t candidate);
  // Takes a piece of the text that was read, `length` UTF-16 units from `from`, as that string. What is wrong
  // when it cannot be read as one.
  std::optional<std::string> Mark(std::size_t slot, std::size_t from, std::size_t length);

  // The line settings and what is ticked.
  ManualChoices Choices() const;

 private:
  struct Decision {
    SerialString String;
    bool Ticked;
  };
  struct Marked {
    std::u16string Text;
    std::size_t From;
  };

  ManualRow& Row(std::size_t slot);
  void AddFound();
  void AddMarked();
  bool AddPiece(std::size_t slot, const Marked& marked, std::string* problem);
  void ApplyDecisions();
  void CollectPieces();
  std::vector<ManualRange> RangesOf(std::size_t from, std::size_t length) const;

  std::u16string text_;
  ManualReading reading_;
  std::vector<ManualRow> rows_;
  std::vector<ManualPiece> pieces_;
  std::map<std::size_t, Decision> decisions_;
  std::map<std::size_t, Marked> marked_;
};

// The better of two readings of one page: more that is sure, then more that was found.
bool BetterReading(const ManualReading& a, const ManualReading& b);

}  // namespace qdm
