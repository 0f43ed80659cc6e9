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

/// The windows of a window server, lent to the core. They are shown, ordered and hidden at the end of a turn of the run
/// loop, so that what is undone in the same turn is never seen. A window that is given back is lent again if the core
/// asks for one like it in the same turn, so that a change of the layout does not uncover the desktop. `Window` has
/// setContent, order, orderOut and settle. Main thread.
template <typename Window>
class DesktopWindows {
 public:
  /// `settled` is called after each turn in which windows were shown, ordered or hidden.
  DesktopWindows(RunLoop& loop, std::function<void()> settled) : runLoop_(loop), afterSettling_(std::move(settled)) {}
  DesktopWindows(const DesktopWindows&) = delete;
  DesktopWindows& operator=(const DesktopWindows&) = delete;

  /// A window that was given back and for which `suits` holds, or else what `make` makes. Everything that was lent must
  /// be destroyed before this object.
  template <typename Suits, typename Make>
  std::unique_ptr<WallpaperWindow> lend(const Suits& suits, const Make& make) {
    const auto spare = std::ranges::find_if(givenBack_, [&](const auto& window) { return suits(*window); });
    std::unique_ptr<Window> window;
    if (spare != givenBack_.end()) {
      window = std::move(*spare);
      givenBack_.erase(spare);
    } else {
      window = make();
      windows_.push_back(window.get());
    }
    return std::make_unique<Loan>(*this, std::move(window));
  }

  /// All windows, lent or given back, in no particular order.
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
    Loan(DesktopWindows& owner, std::unique_ptr<Window> window) : owner_(owner), window_(std::move(window)) {}
    ~Loan() override {
      window_->orderOut();
      owner_.givenBack_.push_back(std::move(window_));
      owner_.settleSoon();
    }
    void setContentView(std::unique_ptr<VideoView> view, std::function<void()> click) override {
      window_->setContent(std::move(view), std::move(click));
    }
    // For the core: a window of the desktop has no other level than its own.
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
    for (const auto& window : givenBack_) {
      std::erase(windows_, window.get());
    }
    givenBack_.clear();
    for (Window* window : windows_) {
      window->settle();
    }
    afterSettling_();
  }

  RunLoop& runLoop_;
  std::function<void()> afterSettling_;
  std::vector<Window*> windows_;
  std::vector<std::unique_ptr<Window>> givenBack_;
  std::optional<Disposable> settling_;
};

}  // namespace quilex
