// What is said about a configuration, for people: how two of them differ, what a control cannot show as it is
// stored, what cannot work on the panel it is for. UTF-8.
#pragma once

#include "config/panel_configuration.h"
#include "projectors/difference_text.h"

#include <string>
#include <vector>

namespace qdm {

// In stored order, with captions for fields and choices' names for their numbers. Another projector is one
// difference, another version of the same projector as many as it has. Flags differ by their meaning; who
// wrote the file (`EditorMajor`, `EditorMinor`) and what nobody can see (`Reserved1`, `Spare`) take no part.
std::vector<DifferenceText> DifferencesInWords(const PanelConfiguration& first,
                                               const PanelConfiguration& second);

// "Maximum volume: 300 -> 18"
std::string LineOf(const DifferenceText& difference);

// "Volume up", "PC 1", ...; "button 9" for a stored value that no button has.
std::string LockButtonName(int button);

// "Volume up: not on a QDM 4", of a step of the unlock sequence; empty when that type has the button.
std::string WhyNotPressed(int button, int controllerType);

// What cannot work as it stands, a sentence each: "First button of the unlock sequence: Volume up: not on a
// QDM 4".
std::vector<std::string> WarningsAbout(const PanelConfiguration& configuration);

// The question before such an unlock sequence goes into a panel: "The unlock sequence cannot be pressed on a
// QDM 4". Empty when it can be.
std::string WhyNotUnlocked(const PanelConfiguration& configuration);

}  // namespace qdm
