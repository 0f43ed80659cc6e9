#pragma once

#include <cstddef>

#include "linux/toolkit/loop/FileDescriptor.h"

namespace quilex {

/// Memory that can be shared with the display server, filled with zeros. When there is none left the process stops.
class SharedPages {
 public:
  explicit SharedPages(std::size_t bytes);
  ~SharedPages();
  SharedPages(const SharedPages&) = delete;
  SharedPages& operator=(const SharedPages&) = delete;

  std::byte* data() const { return static_cast<std::byte*>(memory_); }
  int descriptor() const { return file_.get(); }

 private:
  std::size_t size_;
  FileDescriptor file_;
  void* memory_;
};

}  // namespace quilex
