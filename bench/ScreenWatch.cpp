// Watches what a clip with a frame counter shows on an X screen: screen_watch SECONDS
//
// Prints a line for each change of the counter, "MICROSECONDS COUNTER", on the monotonic clock; and at the end a line
// "drawings N" with the number of times that anything was drawn on the screen. The counter is a strip of kBits cells,
// white for 1, in the top left corner of the screen, the least significant bit first (see measure.py).

#include <poll.h>
#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

namespace {

constexpr std::size_t kBits = 10;
constexpr std::size_t kCell = 24;  // pixels, both ways
constexpr std::size_t kPixelBytes = 4;

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename Type>
using Reply = std::unique_ptr<Type, Free>;

std::optional<int> readCounter(xcb_connection_t* connection, xcb_window_t root) {
  const Reply<xcb_get_image_reply_t> image(
      xcb_get_image_reply(connection,
                          xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, 0, kCell / 2,
                                        static_cast<std::uint16_t>(kBits * kCell), 1, ~0U),
                          nullptr));
  if (!image) {
    return std::nullopt;
  }
  const std::uint8_t* pixels = xcb_get_image_data(image.get());
  int counter = 0;
  for (std::size_t bit = 0; bit < kBits; ++bit) {
    const std::size_t middle = bit * kCell + kCell / 2;
    counter |= (pixels[middle * kPixelBytes] > 128 ? 1 : 0) << bit;
  }
  return counter;
}

}  // namespace

int main(int argc, char** argv) {
  using Clock = std::chrono::steady_clock;
  xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
  if (argc != 2 || xcb_connection_has_error(connection) != 0) {
    std::fputs("usage: screen_watch SECONDS, with an X server at DISPLAY\n", stderr);
    return EXIT_FAILURE;
  }
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  const std::uint8_t damaged = xcb_get_extension_data(connection, &xcb_damage_id)->first_event;
  const Reply<xcb_damage_query_version_reply_t> version(
      xcb_damage_query_version_reply(connection, xcb_damage_query_version(connection, 1, 1), nullptr));
  const xcb_damage_damage_t damage = xcb_generate_id(connection);
  xcb_damage_create(connection, damage, root, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
  xcb_flush(connection);

  const auto end = Clock::now() + std::chrono::seconds(std::atoi(argv[1]));
  int shown = -1;
  long drawings = -1;  // the first report is of what stood there already
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    if (left <= 0 || xcb_connection_has_error(connection) != 0) {
      break;
    }
    bool drawn = false;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection)}) {
      drawn = drawn || (event->response_type & 0x7F) == damaged + XCB_DAMAGE_NOTIFY;
    }
    if (!drawn) {
      // Polled last, because events may have been read together with the last reply.
      pollfd waiting{xcb_get_file_descriptor(connection), POLLIN, 0};
      poll(&waiting, 1, static_cast<int>(left));
      continue;
    }
    const auto now = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch());
    ++drawings;
    // Before the screen is read, so that later drawings are reported again.
    xcb_damage_subtract(connection, damage, XCB_NONE, XCB_NONE);
    if (const auto counter = readCounter(connection, root); counter && *counter != shown) {
      shown = *counter;
      std::printf("%lld %d\n", static_cast<long long>(now.count()), shown);
    }
  }
  std::printf("drawings %ld\n", drawings);
  xcb_disconnect(connection);
  return EXIT_SUCCESS;
}
