#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <utility>
#include <variant>

#include "app/ObserverList.h"
#include "platform/Console.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/RunLoop.h"
#include "platform/SettingsSuite.h"
#include "platform/VideoPlayer.h"
#include "platform/WindowServer.h"

namespace quilex::test {

// Whatever is recorded as text is a series of words, each with a blank before it.

/// A run loop on a virtual clock: actions run only inside `advance`, in the order in which they are due.
struct FakeRunLoop : RunLoop {
  using Time = std::chrono::milliseconds;
  struct Timer {
    Time due;
    Time interval;
    std::function<void()> action;
  };
  Time now{0};
  std::vector<std::shared_ptr<Timer>> timers;

  Disposable arm(Time delay, Time interval, std::function<void()> action) {
    timers.push_back(std::make_shared<Timer>(Timer{now + delay, interval, std::move(action)}));
    return Disposable([this, timer = timers.back()] { std::erase(timers, timer); });
  }
  Disposable after(Time delay, std::function<void()> action) override { return arm(delay, Time(0), std::move(action)); }
  Disposable every(Time interval, std::function<void()> action) override {
    return arm(interval, interval, std::move(action));
  }
  /// Runs what becomes due up to and including that moment. A loop that spins fails the test instead of hanging it.
  void advance(Time duration) {
    const Time end = now + duration;
    for (int turns = 0; turns < 10000; ++turns) {
      const auto next = std::ranges::min_element(timers, {}, [](const auto& timer) { return timer->due; });
      if (next == timers.end() || (*next)->due > end) {
        now = end;
        return;
      }
      // Held while it runs, because an action may release its own token.
      const std::shared_ptr<Timer> timer = *next;
      timers.erase(next);
      now = timer->due;
      if (timer->interval > Time(0)) {
        timer->due += timer->interval;
        timers.push_back(timer);
      }
      timer->action();
    }
    FAIL() << "the run loop spins";
  }
};

/// A suite in memory. Tests change `values` as another process would; `writes` are the keys that the agent wrote.
struct FakeSettingsSuite : SettingsSuite {
  std::map<std::string, std::variant<std::int64_t, float, bool, std::string>> values;
  std::vector<std::string> writes;
  int synchronisations = 0;

  template <typename Type>
  std::optional<Type> read(const std::string& key) const {
    const auto entry = values.find(key);
    const Type* value = entry == values.end() ? nullptr : std::get_if<Type>(&entry->second);
    return value == nullptr ? std::nullopt : std::optional(*value);
  }
  bool contains(const std::string& key) const override { return values.contains(key); }
  std::int64_t integer(const std::string& key) const override { return read<std::int64_t>(key).value_or(0); }
  float real(const std::string& key) const override { return read<float>(key).value_or(0); }
  bool boolean(const std::string& key) const override { return read<bool>(key).value_or(false); }
  std::optional<std::string> string(const std::string& key) const override { return read<std::string>(key); }

  decltype(values)::mapped_type& written(const std::string& key) {
    writes.push_back(key);
    return values[key];
  }
  void setInteger(const std::string& key, std::int64_t value) override { written(key) = value; }
  void setReal(const std::string& key, float value) override { written(key) = value; }
  void setBoolean(const std::string& key, bool value) override { written(key) = value; }
  void setString(const std::string& key, const std::string& value) override { written(key) = value; }
  void remove(const std::string& key) override { values.erase(key); }
  void synchronize() override { ++synchronisations; }
};

struct FakeConsole : Console {
  std::vector<std::string> lines;
  void print(std::string_view line) override { lines.emplace_back(line); }
};

struct FakeNotificationCenter : DistributedNotificationCenter {
  std::string posted;
  std::map<std::string, ObserverList<>> observers;
  Disposable observe(const std::string& name, std::function<void()> handler) override {
    return observers[name].add(std::move(handler));
  }
  void post(const std::string& name) override { posted += " " + name; }
};

struct FakeVideoPlayer : VideoPlayer {
  /// "play", "pause", "seek" and the names of the files loaded.
  std::string commands;
  std::function<void()> itemLoaded;
  ObserverList<PlayerItemStatus> statusObservers;
  ObserverList<> endObservers;
  bool hasItem = false;
  float amplitude = 1;
  bool muted = false;

  void play() override { commands += " play"; }
  void pause() override { commands += " pause"; }
  bool hasCurrentItem() const override { return hasItem; }
  void replaceCurrentItem(const std::filesystem::path& file) override {
    hasItem = true;
    commands += " " + file.filename().string();
    itemLoaded();
  }
  void seekToZero() override { commands += " seek"; }
  float volume() const override { return amplitude; }
  void setVolume(float newAmplitude) override { amplitude = newAmplitude; }
  bool isMuted() const override { return muted; }
  void setMuted(bool mute) override { muted = mute; }
  Disposable observeStatus(std::function<void(PlayerItemStatus)> handler) override {
    return statusObservers.add(std::move(handler));
  }
  Disposable observeItemEnd(std::function<void()> handler) override { return endObservers.add(std::move(handler)); }
};

/// What became of one window; outlives it.
struct WindowRecord {
  Screen screen;
  std::unique_ptr<VideoView> view;
  std::function<void()> click;
  /// "back", "front" and "out" as ordered; "gone" at the window's end.
  std::string orders;
};

struct FakeWindowServer : WindowServer {
  struct Window : WallpaperWindow {
    std::shared_ptr<WindowRecord> record = std::make_shared<WindowRecord>();
    ~Window() override {
      record->view.reset();
      record->orders += " gone";
    }
    void setContentView(std::unique_ptr<VideoView> view, std::function<void()> click) override {
      record->view = std::move(view);
      record->click = std::move(click);
    }
    void setLevel(WindowLevel /*level*/) override {}
    void orderBack() override { record->orders += " back"; }
    void orderFront() override { record->orders += " front"; }
    void orderOut() override { record->orders += " out"; }
  };
  std::vector<Screen> currentScreens;
  /// Every window ever made.
  std::vector<std::shared_ptr<WindowRecord>> made;
  ObserverList<> screenObservers;
  ObserverList<> activeSpaceObservers;

  std::vector<Screen> screens() const override { return currentScreens; }
  std::unique_ptr<WallpaperWindow> makeWallpaperWindow(const Screen& screen) override {
    auto window = std::make_unique<Window>();
    window->record->screen = screen;
    made.push_back(window->record);
    return window;
  }
  Disposable observeScreens(std::function<void()> handler) override { return screenObservers.add(std::move(handler)); }
  Disposable observeActiveSpace(std::function<void()> handler) override {
    return activeSpaceObservers.add(std::move(handler));
  }
};

}  // namespace quilex::test
