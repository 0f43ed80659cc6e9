#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/RunLoop.h"
#include "platform/WindowServer.h"

namespace quilex {

enum class WindowOrder { back, front };

/// The windows of a window server, lent to the core. They are shown, ordered and hidden once a turn of the run loop, so
/// that what is undone in the same turn is never seen; and one that is given up in a turn is lent again when another of
/// the kind is asked for in the same turn, so that a change of the layout does not uncover the desktop. `Window` has
/// setContent, order, orderOut and settle. Main thread.
template <typename Window>
class DesktopWindows {
 public:
  /// `settled` is called after each turn in which windows were shown, ordered or hidden.
  DesktopWindows(RunLoop& loop, std::function<void()> settled) : runLoop_(loop), afterSettling_(std::move(settled)) {}
  DesktopWindows(const DesktopWindows&) = delete;
  DesktopWindows& operator=(const DesktopWindows&) = delete;

  /// A window for which `suits` holds, or else what `make` makes. Everything must be gone before this is.
  template <typename Suits, typename Make>
  std::unique_ptr<WallpaperWindow> lend(const Suits& suits, const Make& make) {
    const auto spare = std::ranges::find_if(givenUp_, [&](const auto& window) { return suits(*window); });
    std::unique_ptr<Window> window;
    if (spare != givenUp_.end()) {
      window = std::move(*spare);
      givenUp_.erase(spare);
    } else {
      window = make();
      windows_.push_back(window.get());
    }
    return std::make_unique<Loan>(*this, std::move(window));
  }

  /// All that are there, in no particular order.
  const std::vector<Window*>& all() const { return windows_; }

  void settleSoon() {
    if (!settling_) {
      settling_ = runLoop_.after(std::chrono::milliseconds(0), [this] { settle(); });
    }
  }

 private:
  /// What the core holds.
  class Loan : public WallpaperWindow {
   public:
    Loan(DesktopWindows& lender, std::unique_ptr<Window> lent) : owner_(lender), window_(std::move(lent)) {}
    ~Loan() override {
      window_->orderOut();
      owner_.givenUp_.push_back(std::move(window_));
      owner_.settleSoon();
    }
    void setContentView(std::unique_ptr<VideoView> view, std::function<void()> click) override {
      window_->setContent(std::move(view), std::move(click));
    }
    // The kind of the window is its level.
    void setLevel(WindowLevel /*level*/) override {}
    void orderBack() override { order(WindowOrder::back); }
    void orderFront() override { order(WindowOrder::front); }
    void orderOut() override {
      window_->orderOut();
      owner_.settleSoon();
    }

   private:
    void order(WindowOrder where) {
      window_->order(where);
      owner_.settleSoon();
    }

    DesktopWindows& owner_;
    std::unique_ptr<Window> window_;
  };

  void settle() {
    settling_.reset();
    for (const auto& window : givenUp_) {
      std::erase(windows_, window.get());
    }
    givenUp_.clear();
    for (Window* window : windows_) {
      window->settle();
    }
    afterSettling_();
  }

  RunLoop& runLoop_;
  std::function<void()> afterSettling_;
  std::vector<Window*> windows_;
  std::vector<std::unique_ptr<Window>> givenUp_;
  std::optional<Disposable> settling_;
};

}  // namespace quilex
