#include "line/serial_port.h"

#include "base/words.h"

namespace qdm {

const char* TextOf(const OpenFailure& failure) {
  const bool known = !failure.Detail.empty();
  switch (failure.Why) {
    case OpenFailure::Reason::Gone:
      break;
    case OpenFailure::Reason::Held:
      return known ? Marked("In use by %1") : Marked("In use by another program");
    case OpenFailure::Reason::NotAllowed:
      return known ? Marked("No permission: only members of the group %1 may open it")
                   : Marked("No permission, and no group would give it");
    case OpenFailure::Reason::Refused:
      return known ? Marked("The system refused it: %1") : Marked("The system refused it");
  }
  return Marked("The device is gone");
}

std::string SentenceOf(const OpenFailure& failure) { return Say(TextOf(failure), {failure.Detail}); }

}  // namespace qdm
