#pragma once

#include <unistd.h>

#include <utility>

namespace quilex {

/// Owns a file descriptor.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  ~FileDescriptor() { reset(); }
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    reset();
    descriptor_ = std::exchange(other.descriptor_, -1);
    return *this;
  }

  int get() const { return descriptor_; }
  bool isOpen() const { return descriptor_ >= 0; }

 private:
  void reset() {
    if (descriptor_ >= 0) {
      close(descriptor_);
      descriptor_ = -1;
    }
  }

  int descriptor_ = -1;
};

}  // namespace quilex
