#pragma once

#include <unistd.h>

#include <utility>

namespace quilex {

/// Owns a file descriptor.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int openDescriptor) : descriptor(openDescriptor) {}
  ~FileDescriptor() { reset(); }
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    reset();
    descriptor = std::exchange(other.descriptor, -1);
    return *this;
  }

  int get() const { return descriptor; }
  bool isOpen() const { return descriptor >= 0; }

 private:
  void reset() {
    if (descriptor >= 0) {
      close(descriptor);
      descriptor = -1;
    }
  }

  int descriptor = -1;
};

}  // namespace quilex
