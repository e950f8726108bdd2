#include "first_image.h"

#include <cstdlib>
#include <iostream>

#include <poll.h>
#include <sys/uio.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

namespace qdm::bench {
namespace {

// The two requests of the extension that are needed here; its C library is in few installations.
struct QueryVersion {
  std::uint8_t Major = 0;
  std::uint8_t Request = 0;
  std::uint16_t Length = 0;  // both filled in by the library
  std::uint32_t ClientMajor = 1;
  std::uint32_t ClientMinor = 1;
};
struct Create {
  std::uint8_t Major = 0;
  std::uint8_t Request = 1;
  std::uint16_t Length = 0;
  std::uint32_t Damage = 0;
  std::uint32_t Drawable = 0;
  std::uint32_t Level = 0;  // an event for each drawing
};

xcb_extension_t theExtension = {"DAMAGE", 0};

template <class Request>
void Send(xcb_connection_t* display, Request request, std::uint8_t opcode, bool replies) {
  // The library wants two free places in front.
  iovec parts[3] = {};
  parts[2] = {&request, sizeof(request)};
  const xcb_protocol_request_t what = {1, &theExtension, opcode, static_cast<std::uint8_t>(replies ? 0 : 1)};
  const unsigned int sequence =
      xcb_send_request(display, replies ? XCB_REQUEST_CHECKED : 0, parts + 2, &what);
  if (replies) std::free(xcb_wait_for_reply(display, sequence, nullptr));
}

[[noreturn]] void Fail(const char* why) {
  std::cerr << "the start cannot be measured: " << why << "\n";
  std::exit(2);
}

}  // namespace

FirstImage::FirstImage() : display_(xcb_connect(nullptr, nullptr)) {
  if (xcb_connection_has_error(display_) != 0) Fail("no X server");
  const xcb_query_extension_reply_t* extension = xcb_get_extension_data(display_, &theExtension);
  if (extension == nullptr || extension->present == 0) Fail("the X server knows no DAMAGE");
  drawn_ = extension->first_event;
  Send(display_, QueryVersion{}, 0, true);
  const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(display_)).data;
  Send(display_, Create{.Damage = xcb_generate_id(display_), .Drawable = screen->root}, 1, false);
  xcb_flush(display_);
}

FirstImage::~FirstImage() { xcb_disconnect(display_); }

void FirstImage::Forget() {
  // Until nothing has been drawn for a while: windows that go leave something to be repaired.
  pollfd line{.fd = xcb_get_file_descriptor(display_), .events = POLLIN, .revents = 0};
  do {
    while (xcb_generic_event_t* event = xcb_poll_for_event(display_)) std::free(event);
  } while (::poll(&line, 1, 100) > 0);
}

void FirstImage::Wait() {
  for (;;) {
    xcb_generic_event_t* event = xcb_wait_for_event(display_);
    if (event == nullptr) Fail("the X server is gone");
    const bool drawn = (event->response_type & 0x7F) == drawn_;
    std::free(event);
    if (drawn) return;
  }
}

}  // namespace qdm::bench
