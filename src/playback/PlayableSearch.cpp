#include "playback/PlayableSearch.h"

#include <utility>
#include <vector>

#include "library/FileURL.h"

namespace quilex {

void PlayableSearch::start(PassesOver passesOver, Done done) {
  question_.reset();
  passesOver_ = std::move(passesOver);
  done_ = std::move(done);
  lookFrom(0);
}

// Asks for some of the files at once; usually the first one exists.
void PlayableSearch::lookFrom(std::size_t step) {
  constexpr std::size_t kFilesAtOnce = 64;
  std::vector<std::filesystem::path> files;
  std::vector<std::size_t> steps;
  for (; step < list_.size() && files.size() < kFilesAtOnce; ++step) {
    const VideoDetail& video = list_.after(step);
    auto file = localPath(video.url);
    if (file && !passesOver_(video)) {
      files.push_back(std::move(*file));
      steps.push_back(step);
    }
  }
  if (files.empty()) {
    finish(std::nullopt);
    return;
  }
  auto reply = [this, files, steps = std::move(steps), step](const FileFinder::Answer& answer) {
    if (answer.found) {
      list_.moveOn(steps[*answer.found]);
      finish(files[*answer.found]);
    } else {
      lookFrom(step);
    }
  };
  question_ = fileFinder_.findFirst(std::move(files), std::move(reply));
}

void PlayableSearch::finish(const std::optional<std::filesystem::path>& file) {
  question_.reset();
  // It may start the next search, which has a `done_` of its own.
  const Done done = std::exchange(done_, nullptr);
  done(file);
}

}  // namespace quilex
