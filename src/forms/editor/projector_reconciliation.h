// A configuration carries its own copy of a projector that the library has too, or not: what happens when
// they do not agree. The configuration's copy is found in the library by its cleaned names; one with a blank
// name is none. File trouble is told in a box and leaves the library as it was.
#pragma once

class QWidget;

namespace qdm {

struct Globals;
struct ProjectorDefinition;
class UserPrompts;

// For a configuration that is being shown: a projector that the library does not have is added to it and
// saved at once, one that differs is the user's decision. False when there was nothing to do.
bool ReconcileProjector(Globals& globals, UserPrompts& prompts, QWidget* parent,
                        ProjectorDefinition& projector);

// After the library was edited: offers to take its version of the projector.
void OfferNewVersion(const Globals& globals, UserPrompts& prompts, QWidget* parent,
                     ProjectorDefinition& projector);

}  // namespace qdm
