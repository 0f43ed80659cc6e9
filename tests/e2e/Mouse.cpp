// A mouse on a Wayland desktop: clicks where standard input says, a click a line, and answers each with a line.
//   X Y WIDTH HEIGHT left|right      a point of a desktop of that size

#include <linux/input-event-codes.h>
#include <wayland-client.h>
#include <wlr-virtual-pointer-unstable-v1.h>

#include <cstdint>
#include <iostream>
#include <string>
#include <string_view>

namespace {

zwlr_virtual_pointer_manager_v1* manager = nullptr;

constexpr wl_registry_listener kListener = {
    .global =
        [](void*, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
          if (std::string_view(interface) == zwlr_virtual_pointer_manager_v1_interface.name) {
            manager = static_cast<zwlr_virtual_pointer_manager_v1*>(
                wl_registry_bind(registry, name, &zwlr_virtual_pointer_manager_v1_interface, 1));
          }
        },
    .global_remove = [](void*, wl_registry*, std::uint32_t) {},
};

}  // namespace

int main() {
  wl_display* const display = wl_display_connect(nullptr);
  if (display == nullptr) {
    return 1;
  }
  wl_registry* const registry = wl_display_get_registry(display);
  wl_registry_add_listener(registry, &kListener, nullptr);
  wl_display_roundtrip(display);
  if (manager == nullptr) {
    return 1;
  }
  zwlr_virtual_pointer_v1* const pointer = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(manager, nullptr);
  wl_display_roundtrip(display);
  std::cout << "ready" << std::endl;

  std::uint32_t time = 0;
  std::uint32_t x = 0;
  std::uint32_t y = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::string name;
  while (std::cin >> x >> y >> width >> height >> name) {
    const std::uint32_t button = name == "left" ? BTN_LEFT : BTN_RIGHT;
    zwlr_virtual_pointer_v1_motion_absolute(pointer, ++time, x, y, width, height);
    zwlr_virtual_pointer_v1_frame(pointer);
    for (const auto state : {WL_POINTER_BUTTON_STATE_PRESSED, WL_POINTER_BUTTON_STATE_RELEASED}) {
      zwlr_virtual_pointer_v1_button(pointer, ++time, button, state);
      zwlr_virtual_pointer_v1_frame(pointer);
    }
    wl_display_roundtrip(display);
    std::cout << "clicked" << std::endl;
  }
  zwlr_virtual_pointer_v1_destroy(pointer);
  zwlr_virtual_pointer_manager_v1_destroy(manager);
  wl_registry_destroy(registry);
  wl_display_disconnect(display);
}
