#include "line/serial_port.h"

namespace qdm {

const char* TextOf(const OpenFailure& failure) {
  const bool known = !failure.Detail.empty();
  switch (failure.Why) {
    case OpenFailure::Reason::Gone:
      break;
    case OpenFailure::Reason::Held:
      return known ? "In use by %1" : "In use by another program";
    case OpenFailure::Reason::NotAllowed:
      return known ? "No permission: only members of the group %1 may open it"
                   : "No permission, and no group would give it";
    case OpenFailure::Reason::Refused:
      return known ? "The system refused it: %1" : "The system refused it";
  }
  return "The device is gone";
}

std::string SentenceOf(const OpenFailure& failure) {
  std::string sentence = TextOf(failure);
  const std::size_t place = sentence.find("%1");
  if (place != std::string::npos) sentence.replace(place, 2, failure.Detail);
  return sentence;
}

}  // namespace qdm
