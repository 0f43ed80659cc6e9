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

// How far the thread reads ahead of the player, which has a queue of its own.
constexpr std::size_t kMostAhead = std::size_t{512} * 1024;

}  // namespace

// Shared with the thread, which may outlive the stream.
struct MediaStream::State {
  State(std::filesystem::path path, Form wanted, bool repeats, std::function<void()> handler)
      : file(std::move(path)), form(wanted), repeating(repeats), whenOpened(std::move(handler)) {}

  void run();
  void finish(Result<Facts> opened);
  void sendPackets(Remuxer& remuxer);
  void serveBytes(const OpenFile& source);
  bool push(std::span<const std::uint8_t> bytes);

  const std::filesystem::path file;
  Form form;
  std::atomic<bool> cancelled = false;

  std::mutex lock;
  std::condition_variable changed;
  bool repeating;
  std::function<void()> whenOpened;
  std::optional<Result<Facts>> result;
  /// Bytes that were read; those before `taken` were handed out.
  std::string ahead;
  std::size_t taken = 0;
  bool ended = false;
  bool broken = false;
  bool still = false;
  /// Whether the thread waits for the player rather than for the file.
  bool idle = false;
  /// For the form `bytes`: where the player reads, how many bytes it waits for, and the size of the file.
  std::int64_t place = 0;
  std::size_t asked = 0;
  std::int64_t length = -1;
};

void MediaStream::State::run() {
  const auto interrupted = [this] { return cancelled.load(); };
  auto input = MediaInput::open(file, interrupted);
  if (!input) {
    finish(failed(std::move(input.error())));
    return;
  }
  const auto source = input->file();
  const std::string formats = input->context()->iformat->name;
  Facts facts{form, formats.substr(0, formats.find(',')), input->quarterTurns()};
  if (form == Form::packets) {
    if (const auto remuxer = Remuxer::make(*std::move(input), [this](auto bytes) { return push(bytes); })) {
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

void MediaStream::State::finish(Result<Facts> opened) {
  const std::lock_guard guard(lock);
  result = std::move(opened);
  // Under the lock, so that nobody is called after the stream is gone.
  if (whenOpened) {
    whenOpened();
  }
}

void MediaStream::State::sendPackets(Remuxer& remuxer) {
  // Waits until the player has taken the last pass. Otherwise many short passes would be queued when repeating ends.
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

MediaStream::MediaStream(std::filesystem::path file, Form form, bool repeats, std::function<void()> whenOpened)
    : state_(std::make_shared<State>(std::move(file), form, repeats, std::move(whenOpened))) {
  std::thread([shared = state_] { shared->run(); }).detach();
}

MediaStream::~MediaStream() {
  cancel();
}

const Result<MediaStream::Facts>* MediaStream::opened() const {
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
  state_->whenOpened = nullptr;
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
