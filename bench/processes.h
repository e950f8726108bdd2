// Programs started as a shell starts them.
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace qdm::bench {

// Runs with both output streams at /dev/null.
pid_t Start(const std::vector<std::string>& command);
// Its end, whatever that was.
void End(pid_t process);
// Runs it and answers its processor time, of the system too, in seconds. Ends this program when it fails.
double ProcessorTimeOf(const std::vector<std::string>& command);

}  // namespace qdm::bench
