// What a label on a page says in one of the languages that manuals are written in: which function of a
// projector, which of its states or inputs, and how plainly. "Turn the projector ON", "Einschalten" and a
// Chinese label are the same function; "Auto Power On" is none of those that a panel sends.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace qdm {

// The strings of a projector definition that a manual can fill.
inline constexpr int kPowerOnSlot = 1;
inline constexpr int kDataSlot = 2;
inline constexpr int kSecondDataSlot = 3;
inline constexpr int kVideoSlot = 4;
inline constexpr int kBlankOnSlot = 5;
inline constexpr int kVolumeUpSlot = 6;
inline constexpr int kVolumeDownSlot = 7;
inline constexpr int kPowerOffSlot = 8;
inline constexpr int kSecondVideoSlot = 23;
inline constexpr int kBlankOffSlot = 24;
inline constexpr std::array kManualSlots = {kPowerOnSlot,     kDataSlot,     kSecondDataSlot, kVideoSlot,
                                            kBlankOnSlot,     kVolumeUpSlot, kVolumeDownSlot, kPowerOffSlot,
                                            kSecondVideoSlot, kBlankOffSlot};

enum class Subject {
  None,   // says nothing of a function: "On", "1", "Command"
  Other,  // some other function, or a query
  Power,
  Computer,
  Digital,  // HDMI, DVI, DisplayPort
  Component,
  Video,
  SVideo,
  Input,  // by number alone
  Blank,
  Volume,
  Mute,  // of picture or of sound: the label does not say
  Sound
};

enum class State { None, On, Off, Up, Down, Open, Close };

struct Function {
  Subject What = Subject::None;
  State To = State::None;
  int Number = 0;           // of an input; 0 when there is none
  int Channel = 0;          // "Input 2 (Video)": the number of the socket, not of its kind
  bool Plain = false;       // no word in the label that could mean something else
  bool Confirms = false;    // asks before it switches off
  bool AtOnce = false;      // switches off without asking
  bool NamesPower = false;  // "Power on", not only "Einschalten"
  bool Both = false;        // "ON/OFF": a heading, or one command that toggles
  bool Unsupported = false;
  bool DigitalSide = false;    // a computer's digital input
  bool AlsoComponent = false;  // an input that takes two kinds of signal
  bool Switches = false;       // says that something is done: "turn", "select"
  std::size_t Unknown = 0;     // words that are in no list
  std::size_t Words = 0;
};

Function ClassifyLabel(std::u16string_view label);

// "Off" below "AV Mute On": the state with the subject that stands above it.
Function InContext(const Function& label, const Function& above);

// The string of the definition, inputs by the first of their kind; nothing for all other functions.
std::optional<int> SlotOf(const Function& function);

}  // namespace qdm
