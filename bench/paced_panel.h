// A simulated panel behind a pseudo-terminal that keeps the true time of its line to some microseconds, in a
// thread of its own, and takes the time from the first record to the acknowledgement of the last.
#pragma once

#include "panels/panel_image.h"

#include <chrono>
#include <memory>
#include <string>
#include <thread>

namespace qdm::bench {

class PacedPanel {
 public:
  // `image` is what it is going to be programmed with.
  explicit PacedPanel(const PanelImage& image);
  ~PacedPanel();
  PacedPanel(const PacedPanel&) = delete;
  PacedPanel& operator=(const PacedPanel&) = delete;

  const std::string& Device() const;
  // Of the last programming; once nobody programs it any more.
  double SecondsForTheRecords() const;

 private:
  struct Line;

  std::unique_ptr<Line> line_;
  std::jthread thread_;
};

// What the bytes of all records and of their acknowledgements take on the wire.
double SecondsOfTheBytes(const PanelImage& image);

}  // namespace qdm::bench
