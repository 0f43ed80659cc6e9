#include "linux/media/MediaStream.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <span>
#include <thread>
#include <utility>

#include "linux/media/Remuxer.h"

namespace quilex {

namespace {

/// How far the thread reads ahead of the player, which has a queue of its own.
constexpr std::size_t kMostAhead = std::size_t{512} * 1024;

}  // namespace

// Shared with the thread, which may outlive the stream.
struct MediaStream::State {
  State(std::filesystem::path name, Form wanted, bool repeats, std::function<void()> whenOpened)
      : file(std::move(name)), form(wanted), repeating(repeats), opened(std::move(whenOpened)) {}

  void run();
  void finish(Result facts);
  void sendPackets(Remuxer& remuxer);
  void serveBytes(const OpenFile& source);
  bool push(std::span<const std::uint8_t> bytes);

  const std::filesystem::path file;
  Form form;
  std::atomic<bool> cancelled = false;

  std::mutex lock;
  std::condition_variable changed;
  bool repeating;
  std::function<void()> opened;
  std::optional<Result> result;
  /// Bytes that were read and not yet handed out, from `taken` on.
  std::string ahead;
  std::size_t taken = 0;
  bool ended = false;
  bool broken = false;
  bool still = false;
  /// Whether the thread waits for the player rather than for the file.
  bool idle = false;
  /// Of the form `bytes`: where the player reads, how much it waits for, and how long the file is.
  std::int64_t place = 0;
  std::size_t asked = 0;
  std::int64_t length = -1;
};

void MediaStream::State::run() {
  const auto interrupted = [this] { return cancelled.load(); };
  auto input = MediaInput::open(file, interrupted);
  if (auto* error = std::get_if<MediaInput::Error>(&input)) {
    finish(std::move(*error));
    return;
  }
  auto& media = std::get<MediaInput>(input);
  const auto source = media.file();
  const std::string formats = media.context()->iformat->name;
  Facts facts{form, formats.substr(0, formats.find(',')), media.quarterTurns()};
  if (form == Form::packets) {
    if (const auto remuxer = Remuxer::make(std::move(media), [this](auto bytes) { return push(bytes); })) {
      facts.format = "nut";
      finish(facts);
      sendPackets(*remuxer);
      return;
    }
    const std::lock_guard guard(lock);
    facts.form = form = Form::bytes;
    ahead.clear();
  }
  length = source->size();
  finish(facts);
  serveBytes(*source);
}

void MediaStream::State::finish(Result facts) {
  const std::lock_guard guard(lock);
  result = std::move(facts);
  // Under the lock, so that nobody is called after the stream has gone.
  if (opened) {
    opened();
  }
}

void MediaStream::State::sendPackets(Remuxer& remuxer) {
  // Not before the player has taken the last pass, so that many short ones are not ahead when it is to be the last.
  const auto startsAgain = [&] {
    std::unique_lock guard(lock);
    still = remuxer.isStill();
    idle = true;
    changed.wait(guard, [&] { return cancelled || !repeating || still || ahead.size() == taken; });
    idle = false;
    return repeating && !still && !cancelled;
  };
  while (remuxer.writePass() && startsAgain()) {
  }
  const std::lock_guard guard(lock);
  ended = true;
  changed.notify_all();
}

bool MediaStream::State::push(std::span<const std::uint8_t> bytes) {
  std::unique_lock guard(lock);
  idle = true;
  changed.wait(guard, [&] { return cancelled || ahead.size() - taken < kMostAhead; });
  idle = false;
  if (taken > kMostAhead / 2 || taken == ahead.size()) {
    ahead.erase(0, std::exchange(taken, 0));
  }
  ahead.append(bytes.begin(), bytes.end());
  changed.notify_all();
  return !cancelled;
}

void MediaStream::State::serveBytes(const OpenFile& source) {
  std::unique_lock guard(lock);
  for (;;) {
    idle = true;
    changed.wait(guard, [&] { return cancelled || asked > 0; });
    idle = false;
    if (cancelled) {
      return;
    }
    const std::int64_t from = place;
    std::string bytes(asked, '\0');
    guard.unlock();
    const std::int64_t count = source.read(bytes.data(), bytes.size(), from);
    guard.lock();
    bytes.resize(static_cast<std::size_t>(std::max<std::int64_t>(count, 0)));
    ahead = std::move(bytes);
    taken = 0;
    asked = 0;
    ended = count == 0;
    broken = count < 0;
    changed.notify_all();
  }
}

MediaStream::MediaStream(std::filesystem::path file, Form wanted, bool repeats, std::function<void()> opened)
    : state_(std::make_shared<State>(std::move(file), wanted, repeats, std::move(opened))) {
  std::thread([shared = state_] { shared->run(); }).detach();
}

MediaStream::~MediaStream() {
  cancel();
}

const MediaStream::Result* MediaStream::result() const {
  const std::lock_guard guard(state_->lock);
  return state_->result ? &*state_->result : nullptr;
}

void MediaStream::setRepeating(bool repeats) {
  const std::lock_guard guard(state_->lock);
  state_->repeating = repeats;
  state_->changed.notify_all();
}

bool MediaStream::isStill() const {
  const std::lock_guard guard(state_->lock);
  return state_->still;
}

void MediaStream::cancel() {
  const std::lock_guard guard(state_->lock);
  state_->cancelled = true;
  state_->opened = nullptr;
  state_->changed.notify_all();
}

std::int64_t MediaStream::read(char* buffer, std::uint64_t bytes) {
  std::unique_lock guard(state_->lock);
  if (state_->form == Form::bytes && state_->ahead.size() == state_->taken && !state_->broken) {
    state_->asked = bytes;
    state_->ended = false;
    state_->changed.notify_all();
  }
  const auto hasNews = [&] {
    return state_->cancelled || state_->ended || state_->broken || state_->ahead.size() > state_->taken;
  };
  while (!state_->changed.wait_for(guard, kPatience, hasNews)) {
    if (!state_->idle) {
      state_->broken = true;
    }
  }
  const std::size_t count = std::min<std::size_t>(bytes, state_->ahead.size() - state_->taken);
  if (state_->cancelled || (count == 0 && state_->broken)) {
    return -1;
  }
  std::copy_n(state_->ahead.data() + state_->taken, count, buffer);
  state_->taken += count;
  if (state_->form == Form::bytes) {
    state_->place += static_cast<std::int64_t>(count);
  }
  state_->changed.notify_all();
  return static_cast<std::int64_t>(count);
}

std::int64_t MediaStream::seek(std::int64_t offset) {
  const std::lock_guard guard(state_->lock);
  if (state_->form != Form::bytes || offset < 0) {
    return -1;
  }
  state_->ahead.clear();
  state_->taken = 0;
  state_->place = offset;
  return offset;
}

std::int64_t MediaStream::size() const {
  const std::lock_guard guard(state_->lock);
  return state_->form == Form::bytes ? state_->length : -1;
}

}  // namespace quilex
