#include "linux/desktop/x11/IconWindow.h"

#include <xcb/composite.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace quilex {

namespace {

constexpr std::uint32_t kAlpha = 0xFF000000;
// Rows that are read at once, so that a large window needs little memory.
constexpr int kRowsAtOnce = 64;
// A window that is being drawn, or whose background changes at the same time, shows neither its icons nor its
// background for a moment.
constexpr std::chrono::milliseconds kDoubt{1500};

// The rectangle's pixels in rows from the top; empty if the drawable is gone, is not as large, or has pixels that do
// not take 32 bits.
std::vector<std::uint32_t> readPixels(xcb_connection_t* connection, xcb_drawable_t drawable, const PixelRect& part) {
  const auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, static_cast<std::int16_t>(part.x),
                                    static_cast<std::int16_t>(part.y), static_cast<std::uint16_t>(part.width),
                                    static_cast<std::uint16_t>(part.height), ~0U);
  const XcbPointer<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection, cookie, nullptr));
  const std::size_t count = static_cast<std::size_t>(part.width) * static_cast<std::size_t>(part.height);
  if (!reply || static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) != count * sizeof(std::uint32_t)) {
    return {};
  }
  std::vector<std::uint32_t> pixels(count);
  std::memcpy(pixels.data(), xcb_get_image_data(reply.get()), count * sizeof(std::uint32_t));
  return pixels;
}

template <typename Handle>
bool forBands(const PixelRect& part, const Handle& handle) {
  for (int top = 0; top < part.height; top += kRowsAtOnce) {
    if (!handle(PixelRect{part.x, part.y + top, part.width, std::min(kRowsAtOnce, part.height - top)})) {
      return false;
    }
  }
  return true;
}

PixelRect united(const PixelRect& one, const PixelRect& other) {
  const int left = std::min(one.x, other.x);
  const int top = std::min(one.y, other.y);
  return {left, top, std::max(one.x + one.width, other.x + other.width) - left,
          std::max(one.y + one.height, other.y + other.height) - top};
}

PixelRect intersected(const PixelRect& one, const PixelRect& other) {
  const int left = std::max(one.x, other.x);
  const int top = std::max(one.y, other.y);
  return {left, top, std::max(0, std::min(one.x + one.width, other.x + other.width) - left),
          std::max(0, std::min(one.y + one.height, other.y + other.height) - top)};
}

}  // namespace

IconWindow::IconWindow(xcb_connection_t* connection, xcb_window_t root, xcb_window_t window)
    : connection_(connection), root_(root), window_(window), damage_(connection) {
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &events);
  xcb_composite_redirect_window(connection, window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
  xcb_damage_create(connection, damage_.id(), window, XCB_DAMAGE_REPORT_LEVEL_BOUNDING_BOX);
}

IconWindow::~IconWindow() {
  xcb_composite_unredirect_window(connection_, window_, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
}

std::vector<PixelRect> IconWindow::icons() const {
  return kind_ == IconLayer::Kind::opaque ? std::vector{place_} : mask_.rectangles(place_.x, place_.y);
}

void IconWindow::damaged(const xcb_damage_notify_event_t& event) {
  const PixelRect area{event.area.x, event.area.y, event.area.width, event.area.height};
  stale_ = stale_ ? united(*stale_, area) : area;
}

bool IconWindow::locate() {
  const auto geometryCookie = xcb_get_geometry(connection_, window_);
  const auto attributesCookie = xcb_get_window_attributes(connection_, window_);
  const auto placeCookie = xcb_translate_coordinates(connection_, window_, root_, 0, 0);
  const XcbPointer<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(connection_, geometryCookie, nullptr));
  const XcbPointer<xcb_get_window_attributes_reply_t> attributes(
      xcb_get_window_attributes_reply(connection_, attributesCookie, nullptr));
  const XcbPointer<xcb_translate_coordinates_reply_t> place(
      xcb_translate_coordinates_reply(connection_, placeCookie, nullptr));
  isViewable_ = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
  if (!geometry || !place || !isViewable_) {
    return false;
  }
  const PixelRect now{place->dst_x, place->dst_y, geometry->width, geometry->height};
  isKnown_ = isKnown_ && now == place_;
  place_ = now;
  depth_ = geometry->depth;
  return true;
}

void IconWindow::look(xcb_pixmap_t background) {
  // What is drawn from here on is reported again.
  xcb_damage_subtract(connection_, damage_.id(), XCB_NONE, XCB_NONE);
  const std::optional<PixelRect> stale = std::exchange(stale_, std::nullopt);
  if (!locate()) {
    isKnown_ = true;
    return;
  }
  const IconLayer::Kind kindBefore = kind_;
  const Background backgroundBefore = background_;
  IconMask before = mask_;
  const bool isWhole = !std::exchange(isKnown_, true) || kind_ == IconLayer::Kind::opaque;
  if (!isWhole && (!stale || mark(intersected(*stale, whole()))) && !mask_.isImplausible()) {
    return;
  }
  mask_ = IconMask({place_.width, place_.height});
  classify(background);
  const bool isDoubtful =
      kindBefore == IconLayer::Kind::separable && kind_ == IconLayer::Kind::opaque && before.size() == mask_.size();
  const auto now = std::chrono::steady_clock::now();
  if (isDoubtful && now - doubtfulSince_.value_or(now) < kDoubt) {
    doubtfulSince_ = doubtfulSince_.value_or(now);
    kind_ = kindBefore;
    background_ = backgroundBefore;
    mask_ = std::move(before);
    isKnown_ = false;
  } else {
    doubtfulSince_.reset();
  }
}

void IconWindow::classify(xcb_pixmap_t background) {
  if (depth_ == kDepthWithAlpha) {
    const auto most = majority();
    if (most && (*most & kAlpha) == 0) {
      kind_ = IconLayer::Kind::transparent;
      mark(whole());
      return;
    }
  }
  kind_ = IconLayer::Kind::separable;
  background_ = {background, 0};
  if (background != XCB_NONE && mark(whole()) && !mask_.isImplausible()) {
    return;
  }
  const auto most = majority();
  background_ = {XCB_NONE, most.value_or(0)};
  if (!most || !mark(whole())) {
    kind_ = IconLayer::Kind::opaque;
  }
}

bool IconWindow::mark(const PixelRect& part) {
  return forBands(part, [&](const PixelRect& band) {
    const auto pixels = readPixels(connection_, window_, band);
    std::vector<std::uint32_t> behind;
    if (kind_ == IconLayer::Kind::separable && background_.pixmap != XCB_NONE) {
      behind =
          readPixels(connection_, background_.pixmap, {place_.x + band.x, place_.y + band.y, band.width, band.height});
      if (behind.empty()) {
        return false;
      }
    }
    std::size_t index = 0;
    for (int y = band.y; !pixels.empty() && y < band.y + band.height; ++y) {
      for (int x = band.x; x < band.x + band.width; ++x, ++index) {
        const std::uint32_t pixel = pixels[index];
        mask_.set(x, y,
                  kind_ == IconLayer::Kind::transparent
                      ? (pixel & kAlpha) != 0
                      : !isSameColour(pixel, behind.empty() ? background_.colour : behind[index]));
      }
    }
    return !pixels.empty();
  });
}

std::optional<std::uint32_t> IconWindow::majority() const {
  MajorityPixel most;
  const auto read = [&](const PixelRect& band) { return readPixels(connection_, window_, band); };
  forBands(whole(), [&](const PixelRect& band) {
    most.vote(read(band));
    return true;
  });
  forBands(whole(), [&](const PixelRect& band) {
    most.count(read(band));
    return true;
  });
  return most.winner();
}

}  // namespace quilex
