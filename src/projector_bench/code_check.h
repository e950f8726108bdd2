// Looks over the commands of a definition as a family: what they have in common, which of their bytes are a
// check sum and of what, and which command breaks the pattern. Found by search over positions, ranges and
// methods, not by a list of protocols; a rule counts only where chance cannot have made it, so that a family
// without a fault is never accused. The setup window marks the strings that it finds, `qdm describe` tells
// them.
#pragma once

#include "projectors/projector_definition.h"
#include "serial_strings/sum_search.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace qdm {

enum class CodeFault {
  CheckSum,
  Terminator,
  BlankAtEnd,
  SameCommand,
  SameOnAndOff,
  LongReply,
};

struct CodeFinding {
  Slot Place;
  CodeFault Fault;
  std::string Text;                         // "Blank: last byte is 14, the other eight make it 12"
  std::optional<SerialString> Corrected{};  // what the others make of it
};

struct CodeFamily {
  std::vector<Slot> Members;
  Bytes Head;  // that all of them begin and end with
  Bytes Tail;
  std::optional<SumRule> Sum;
  std::size_t Proven = 0;  // members that keep the sum's rule
};

struct CodeCheckResult {
  CodeFamily Family;
  std::vector<CodeFinding> Findings;  // by slot
};

CodeCheckResult CheckCodes(const ProjectorDefinition& projector);

// What is known of the family, a sentence an element: "8 of 9 commands end with the exclusive or of ...".
std::vector<std::string> FamilyText(const CodeFamily& family);

// The string with its check sum computed by the rule; nothing when it is too short for it.
std::optional<SerialString> WithSum(const SerialString& string, const SumRule& rule);

}  // namespace qdm
