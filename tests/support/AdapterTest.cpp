#include "support/AdapterTest.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

namespace quilex {

bool waitFor(const std::function<bool()>& condition) {
  const QDeadlineTimer deadline(30'000);
  QEventLoop loop;
  QTimer look;
  bool holds = false;
  QObject::connect(&look, &QTimer::timeout, &loop, [&] {
    holds = condition();
    if (holds || deadline.hasExpired()) {
      loop.quit();
    }
  });
  look.start(2);
  loop.exec();
  return holds;
}

void writeFile(const std::filesystem::path& file, const std::string& text) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << text;
}

std::string readFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace quilex

int main(int argc, char** argv) {
  // On a bus of their own the tests neither meet a running agent nor tell it anything.
  if (std::getenv("QUILEX_TEST_BUS") == nullptr) {
    setenv("QUILEX_TEST_BUS", "private", 1);
    std::vector<char*> command{const_cast<char*>("dbus-run-session"), const_cast<char*>("--")};
    command.insert(command.end(), argv, argv + argc + 1);
    execvp(command[0], command.data());
    std::perror("dbus-run-session");
    return 1;
  }
  const QCoreApplication application(argc, argv);
  ::testing::InitGoogleMock(&argc, argv);
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  return RUN_ALL_TESTS();
}
