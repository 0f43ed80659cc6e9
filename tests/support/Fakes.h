#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <fstream>
#include <map>
#include <set>
#include <variant>

#include "base/ObserverList.h"
#include "platform/Console.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/FileFinder.h"
#include "platform/InterfaceWindow.h"
#include "platform/RunLoop.h"
#include "platform/SettingsSuite.h"
#include "platform/StatusItem.h"
#include "platform/VideoPlayer.h"
#include "platform/WindowServer.h"
#include "platform/Workspace.h"

namespace quilex::test {

using Handler = std::function<void()>;
using StatusHandler = std::function<void(PlayerItemStatus)>;

// Whatever is recorded as text is a series of words, each with a blank before it.

/// A folder for one test, removed with all it holds.
struct TemporaryFolder {
  std::string path = (std::filesystem::temp_directory_path() / "quilex-test-XXXXXX").string();
  TemporaryFolder() { path = mkdtemp(path.data()); }
  ~TemporaryFolder() { std::filesystem::remove_all(path); }
  TemporaryFolder& operator=(TemporaryFolder&&) = delete;
  std::string operator/(const std::string& name) const { return path + "/" + name; }
  std::string write(const std::string& name) const {
    std::ofstream(*this / name) << "neither a video nor a database";
    return *this / name;
  }
};

/// A run loop on a virtual clock: actions run only inside `advance`, in the order in which they are due.
struct FakeRunLoop : RunLoop {
  using Time = std::chrono::milliseconds;
  struct Timer {
    Time due;
    Time interval;
    Handler action;
  };
  Time now{0};
  std::vector<std::shared_ptr<Timer>> timers;
  Disposable arm(Time delay, Time interval, Handler action) {
    timers.push_back(std::make_shared<Timer>(Timer{now + delay, interval, std::move(action)}));
    return Disposable([this, timer = timers.back()] { std::erase(timers, timer); });
  }
  Disposable after(Time delay, Handler action) override { return arm(delay, Time(0), std::move(action)); }
  Disposable every(Time interval, Handler action) override { return arm(interval, interval, std::move(action)); }
  /// Runs what becomes due up to and including that moment. A loop that spins fails the test instead of hanging it.
  void advance(Time duration) {
    const Time end = now + duration;
    for (int turns = 0;; ++turns) {
      ASSERT_LT(turns, 10000) << "the run loop spins";
      const auto next = std::ranges::min_element(timers, {}, [](const auto& timer) { return timer->due; });
      if (next == timers.end() || (*next)->due > end) {
        break;
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
    now = end;
  }
};

/// Answers in the next turn of the run loop; where a file system hangs, after two seconds.
struct FakeFileFinder : FileFinder {
  explicit FakeFileFinder(RunLoop& loop) : runLoop(loop) {}
  RunLoop& runLoop;
  /// The names of the files that hang.
  std::set<std::string> hanging;
  Disposable findFirst(std::vector<std::filesystem::path> files, std::function<void(Answer)> reply) override {
    Answer answer;
    std::chrono::milliseconds delay{0};
    for (std::size_t index = 0; index < files.size() && !answer.found; ++index) {
      const bool hangs = hanging.contains(files[index].filename());
      answer.someUnanswered |= hangs;
      delay += hangs ? kPatience : std::chrono::seconds(0);
      if (!hangs && std::filesystem::is_regular_file(files[index])) {
        answer.found = index;
      }
    }
    return runLoop.after(delay, [answer, reply] { reply(answer); });
  }
};

/// A suite in memory. Tests change `values` as another process would; `writes` is what the agent wrote.
struct FakeSettingsSuite : SettingsSuite {
  std::map<std::string, std::variant<std::int64_t, float, bool, std::string>> values;
  std::string writes;
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
  template <typename Type>
  void write(const std::string& key, const Type& value, const std::string& text) {
    writes += " " + key + "=" + text;
    values[key] = value;
  }
  void setInteger(const std::string& key, std::int64_t value) override { write(key, value, std::to_string(value)); }
  void setReal(const std::string& key, float value) override { write(key, value, testing::PrintToString(value)); }
  void setBoolean(const std::string& key, bool value) override { write(key, value, value ? "yes" : "no"); }
  void setString(const std::string& key, const std::string& value) override { write(key, value, value); }
  void remove(const std::string& key) override { values.erase(key); }
  void synchronize() override { ++synchronisations; }
};

struct FakeConsole : Console {
  std::vector<std::string> lines;
  std::vector<std::string> warnings;
  std::vector<std::string> logged;
  void print(std::string_view line) override { lines.emplace_back(line); }
  void warn(std::string_view line) override { warnings.emplace_back(line); }
  void log(LogLevel /*level*/, std::string_view line) override { logged.emplace_back(line); }
};

struct FakeNotificationCenter : DistributedNotificationCenter {
  std::string posted;
  std::map<std::string, ObserverList<>> names;
  Disposable observe(const std::string& name, Handler handler) override { return names[name].add(std::move(handler)); }
  void post(const std::string& name) override { posted += " " + name; }
  void setSuspended(bool suspended) override { posted += suspended ? " held" : " delivered"; }
};

struct FakeVideoPlayer : VideoPlayer {
  /// "play", "pause", "seek" and the names of the files loaded.
  std::string commands;
  ObserverList<PlayerItemStatus> statusObservers;
  ObserverList<> endObservers;
  /// The name of the current item's file.
  std::string item;
  float amplitude = 1;
  bool muted = false;
  bool plays = false;
  bool held = false;
  bool repeats = false;
  void play() override { (commands += " play", plays = true); }
  void pause() override { (commands += " pause", plays = false); }
  void setHeld(bool isHeld) override { held = isHeld; }
  void setRepeating(bool repeating) override { repeats = repeating; }
  bool hasCurrentItem() const override { return !item.empty(); }
  void replaceCurrentItem(const std::filesystem::path& file) override {
    item = file.filename().string();
    commands += " " + item;
  }
  void seekToZero() override { commands += " seek"; }
  float volume() const override { return amplitude; }
  void setVolume(float newAmplitude) override { amplitude = newAmplitude; }
  bool isMuted() const override { return muted; }
  void setMuted(bool mute) override { muted = mute; }
  Disposable observeStatus(StatusHandler handler) override { return statusObservers.add(std::move(handler)); }
  Disposable observeItemEnd(Handler handler) override { return endObservers.add(std::move(handler)); }
};

struct FakeWindowServer : WindowServer {
  struct Window : WallpaperWindow {
    Window(const Screen& onScreen, std::string& log) : screen(onScreen), orders(log) {}
    ~Window() override { orders += " gone"; }
    void setContentView(std::unique_ptr<VideoView> newView, Handler newClick) override {
      view = std::move(newView);
      click = std::move(newClick);
    }
    void setLevel(WindowLevel /*level*/) override {}
    void orderBack() override { orders += " back"; }
    void orderFront() override { orders += " front"; }
    void orderOut() override { orders += " out"; }
    Screen screen;
    std::string& orders;
    std::unique_ptr<VideoView> view;
    Handler click;
  };
  std::vector<Screen> currentScreens;
  /// Every window ever made, though it be gone, and what was told to it: "back", "front", "out" and at its end "gone".
  std::vector<Window*> made;
  std::deque<std::string> orders;
  ObserverList<> screenObservers;
  ObserverList<> spaceObservers;
  ObserverList<> occlusionObservers;
  ObserverList<bool> unseenObservers;
  std::vector<Screen> screens() const override { return currentScreens; }
  std::unique_ptr<WallpaperWindow> makeWallpaperWindow(const Screen& screen) override {
    auto window = std::make_unique<Window>(screen, orders.emplace_back());
    made.push_back(window.get());
    return window;
  }
  Disposable observeScreens(Handler handler) override { return screenObservers.add(std::move(handler)); }
  Disposable observeOcclusion(Handler handler) override { return occlusionObservers.add(std::move(handler)); }
  Disposable observeUnseen(std::function<void(bool)> handler) override {
    return unseenObservers.add(std::move(handler));
  }
  Disposable observeActiveSpace(Handler handler) override { return spaceObservers.add(std::move(handler)); }
};

struct FakeStatusItem : StatusItem {
  std::string image;
  std::shared_ptr<Menu> menu;
  void setTemplateImage(const std::string& name) override { image = name; }
  void setMenu(std::shared_ptr<Menu> newMenu) override { menu = std::move(newMenu); }
};

struct FakeInterfaceWindow : InterfaceWindow {
  struct Field : TextField {
    std::string text, html;
    void setStringValue(const std::string& newText) override { text = newText; }
    bool appendHTML(const std::string& appended) override {
      html += appended;
      return true;
    }
  };
  struct Button : PushButton {
    Handler press;
    void setAction(Handler action) override { press = std::move(action); }
  };
  explicit FakeInterfaceWindow(std::string& itsLog) : log(itsLog) {}
  ~FakeInterfaceWindow() override { log += " gone"; }
  /// What was told to the windows.
  std::string& log;
  std::map<std::string, Field> fields;
  std::map<std::string, Button> buttons;
  TextField* textField(const std::string& name) override { return &fields[name]; }
  PushButton* button(const std::string& name) override { return &buttons[name]; }
  void hideStandardButton(StandardWindowButton each) override { log += " -" + std::to_string(static_cast<int>(each)); }
  void setClearBackground() override { log += " clear"; }
  void setContents(const std::string& name) override { log += " " + name; }
  void show(Keyboard keyboard) override { log += keyboard == Keyboard::comes ? " show" : " show-behind"; }
  void close() override { log += " close"; }
};

struct FakeWorkspace : Workspace {
  /// What was asked for, and the answer to give in an open panel.
  std::string log;
  std::function<void(bool)> answer;
  ObserverList<> wakeObservers;
  ObserverList<> resignObservers;
  void launchApplication(const std::string& identifier) override { log += " " + identifier; }
  void openURL(const std::string& url) override { log += " " + url; }
  void showOpenPanel(const std::vector<std::string>& types, std::function<void(bool)> done) override {
    for (const std::string& type : types) {
      log += " " + type;
    }
    answer = std::move(done);
  }
  std::optional<bool> startsAtLogin;
  void setStartsAtLogin(bool starts) override { startsAtLogin = starts; }
  void terminate() override { log += " terminate"; }
  Disposable observeWake(Handler handler) override { return wakeObservers.add(std::move(handler)); }
  Disposable observeResignActive(Handler handler) override { return resignObservers.add(std::move(handler)); }
};

}  // namespace quilex::test
