#include "linux/render/SharedPages.h"

#include <sys/mman.h>

#include "base/FatalError.h"

namespace quilex {

SharedPages::SharedPages(std::size_t bytes) : size_(bytes), file_(memfd_create("quilex-picture", MFD_CLOEXEC)) {
  if (!file_.isOpen() || ftruncate(file_.get(), static_cast<off_t>(size_)) != 0) {
    fatalError("no memory for a picture");
  }
  memory_ = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_SHARED, file_.get(), 0);
  if (memory_ == MAP_FAILED) {
    fatalError("no memory for a picture");
  }
}

SharedPages::~SharedPages() {
  munmap(memory_, size_);
}

}  // namespace quilex
