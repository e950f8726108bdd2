// How a definition's line and strings are used on the bench: its settings as a port takes them, and its
// commands ready to be sent.
#pragma once

#include "projector_bench/string_trial.h"

#include <string>

namespace qdm {

// "19200,o,8,1". A parity that stands for none counts as none.
std::string BenchLineSettings(const ProjectorDefinition& projector);

// Any command of the definition, or one that is not part of it, with the definition's delay between bytes. A
// VAR byte becomes the level at which trying starts.
StringTrial TrialOf(const ProjectorDefinition& projector, const SerialString& command);

// The bytes in use.
Bytes BytesIn(const SerialString& string);

// What the trial puts on the line, delays aside.
Bytes BytesOnLine(const StringTrial& trial);

}  // namespace qdm
