// When a program draws for the first time: tells of the first picture that reaches a window of this screen,
// whoever sends it. Needs an X server with the DAMAGE extension.
#pragma once

#include <cstdint>

struct xcb_connection_t;

namespace qdm::bench {

class FirstImage {
 public:
  FirstImage();
  ~FirstImage();
  FirstImage(const FirstImage&) = delete;
  FirstImage& operator=(const FirstImage&) = delete;

  // Forgets what has been drawn so far.
  void Forget();
  // Returns with the first picture from then on.
  void Wait();

 private:
  xcb_connection_t* display_;
  std::uint8_t drawn_ = 0;  // the event
};

}  // namespace qdm::bench
