#include "companion/window/LibraryFeed.h"

#include <sys/stat.h>

#include <utility>

#include "companion/VideoLibrary.h"
#include "library/LibraryFile.h"
#include "linux/session/bundle/LinuxBundle.h"
#include "platform/AppInfo.h"

namespace quilex {

namespace {

using namespace std::chrono_literals;

constexpr auto kLookingInterval = 700ms;

using Reading = std::optional<Result<std::vector<VideoCard>>>;

}  // namespace

LibraryFeed::LibraryFeed(BackgroundWork& work, RunLoop& runLoop, DistributedNotificationCenter& notifications,
                         Deliver deliver)
    : jobs_(work), deliver_(std::move(deliver)) {
  read();
  looking_.emplace(runLoop.every(kLookingInterval, [this] {
    // A file system that does not answer is not asked again before it has.
    if (jobs_.isIdle()) {
      look(false);
    }
  }));
  notification_.emplace(notifications.observe("UpdateVideoList", [this] { read(); }));
}

void LibraryFeed::read() {
  look(true);
}

// Programs that write the database need not notify, the agent for one.
LibraryFeed::Signature LibraryFeed::signature() {
  std::string text;
  const std::string file = libraryFile(AppInfo(LinuxBundle::main().environment()).urls().applicationSupport());
  for (const char* const ending : {"", "-wal"}) {
    struct stat status = {};
    if (stat((file + ending).c_str(), &status) == 0) {
      text += std::to_string(status.st_ino) + ' ' + std::to_string(status.st_size) + ' ' +
              std::to_string(status.st_mtim.tv_sec) + ' ' + std::to_string(status.st_mtim.tv_nsec) + ' ';
    }
  }
  return text;
}

void LibraryFeed::look(bool always) {
  jobs_.run<Reading>(
      [seen = seen_, always]() -> Reading {
        const Signature now = signature();
        if (!always && now == *seen) {
          return std::nullopt;
        }
        auto cards = readLibrary().map(makeCards);
        // A change between the two looks like one after them, and is read again, as is what could not be read.
        *seen = cards ? now : Signature();
        return cards;
      },
      [this](Reading reading) {
        if (reading) {
          deliver_(*std::move(reading));
        }
      });
}

}  // namespace quilex
