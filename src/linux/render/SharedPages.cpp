#include "linux/render/SharedPages.h"

#include <sys/mman.h>

#include "base/FatalError.h"

namespace quilex {

SharedPages::SharedPages(std::size_t bytes) : size(bytes), file(memfd_create("quilex-picture", MFD_CLOEXEC)) {
  if (!file.isOpen() || ftruncate(file.get(), static_cast<off_t>(size)) != 0) {
    fatalError("no memory for a picture");
  }
  memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
  if (memory == MAP_FAILED) {
    fatalError("no memory for a picture");
  }
}

SharedPages::~SharedPages() {
  munmap(memory, size);
}

}  // namespace quilex
