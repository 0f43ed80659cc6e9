#include "companion/Interruption.h"

#include <csignal>
#include <initializer_list>

namespace quilex {

namespace {

volatile std::sig_atomic_t caught = 0;

}  // namespace

void catchInterruptions() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action = {};
    action.sa_handler = [](int /*signal*/) { caught = 1; };
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigaction(signal, &action, nullptr);
  }
}

bool interrupted() {
  return caught != 0;
}

}  // namespace quilex
