#include "playback/PlayableSearch.h"

#include <utility>
#include <vector>

#include "library/FileURL.h"

namespace quilex {

namespace {

// How many files are asked for at once. Usually the first one exists.
constexpr std::size_t kFilesAtOnce = 64;

/// A video of the playlist, and how many steps lead to it from the current one.
struct Candidate {
  const VideoInfoNode* node;
  std::size_t distance;
};

}  // namespace

void PlayableSearch::start(PassesOver passesOver, Done done) {
  question_.reset();
  passesOver_ = std::move(passesOver);
  done_ = std::move(done);
  lookFrom(list_.current(), 0);
}

void PlayableSearch::lookFrom(const VideoInfoNode* node, std::size_t distance) {
  std::vector<std::filesystem::path> files;
  std::vector<Candidate> candidates;
  for (; distance < list_.size() && files.size() < kFilesAtOnce; ++distance, node = after(node)) {
    auto file = localPath(node->val.url);
    if (file && !passesOver_(node->val)) {
      files.push_back(std::move(*file));
      candidates.push_back({node, distance});
    }
  }
  if (files.empty()) {
    finish(std::nullopt);
    return;
  }
  auto reply = [this, files, candidates = std::move(candidates), node, distance](const FileFinder::Answer& answer) {
    if (!answer.found) {
      lookFrom(node, distance);
      return;
    }
    for (std::size_t step = 0; step < candidates[*answer.found].distance; ++step) {
      list_.moveToNext();
    }
    finish(files[*answer.found]);
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
