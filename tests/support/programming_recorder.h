// What a download tells, and what is to happen while it runs.
#pragma once

#include "panels/programming.h"
#include "support/message_printer.h"

#include <functional>
#include <vector>

namespace qdm {

struct ProgrammingRecorder : ProgrammingObserver {
  std::vector<int> Progress;  // the numbers of records that were acknowledged
  std::vector<Message> Told;
  std::function<void(int records)> WhenAcknowledged = [](int) {};

  void Connecting() override {}
  void RecordsAcknowledged(int records) override {
    Progress.push_back(records);
    WhenAcknowledged(records);
  }
  void Tell(const Message& message) override { Told.push_back(message); }
};

}  // namespace qdm
