// What has to be put round the characters or bytes that a page prints for its commands: a terminator named in
// a footnote, STX and ETX of a drawn format, a prefix that only an example shows.
#pragma once

#include "manuals/codes.h"
#include "manuals/page.h"

#include <vector>

namespace qdm {

struct Frame {
  CodeBytes Before;
  CodeBytes Behind;
  bool Settled = false;  // the page says so, not only mentions it

  bool Empty() const { return Before.empty() && Behind.empty(); }
};

// What the text says of start and end.
Frame FrameOfText(const ManualPage& page);

// What longer examples have in common round the short codes; empty where fewer than two agree.
Frame FrameOfExamples(const ManualPage& page, const std::vector<Code>& codes);

// Completes codes that have no frame of their own.
void PutFrames(const ManualPage& page, std::vector<Code>& codes);

}  // namespace qdm
