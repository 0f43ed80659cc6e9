// Reads a guide reply with the client, and for comparison by calling OpenSSL, nlohmann-json and Qt's image decoder
// directly: guide_bench ANSWER.json. Prints "SECONDS REFERENCE_SECONDS IMAGES", the medians of kRounds.

#include <openssl/evp.h>

#include <QImage>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "linux/toolkit/http/QtImage.h"
#include "service/Cipher.h"
#include "service/WebModel.h"
#include "support/ServiceFakes.h"

namespace {

using namespace quilex;
using Clock = std::chrono::steady_clock;

constexpr int kRounds = 7;

unsigned char* bytesOf(std::string& text) {
  return reinterpret_cast<unsigned char*>(text.data());
}

std::string base64(const std::string& text) {
  std::string bytes(text.size() / 4 * 3, '\0');
  EVP_DecodeBlock(bytesOf(bytes), reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
  return bytes.substr(0,
                      bytes.size() - static_cast<std::size_t>(std::ranges::count(text.substr(text.size() - 2), '=')));
}

std::size_t readDirectly(const std::string& reply) {
  std::string cipherText = base64(reply);
  std::string text(cipherText.size(), '\0');
  std::string key = "Rq7Lm2VxT9bKd4Ws";
  std::string vector = "Hc3Np8ZyF6jQa1Ue";
  const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                EVP_CIPHER_CTX_free);
  int size = 0;
  int rest = 0;
  EVP_DecryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, bytesOf(key), bytesOf(vector));
  EVP_DecryptUpdate(context.get(), bytesOf(text), &size, bytesOf(cipherText), static_cast<int>(cipherText.size()));
  EVP_DecryptFinal_ex(context.get(), bytesOf(text) + size, &rest);
  text.resize(static_cast<std::size_t>(size) + static_cast<std::size_t>(rest));
  const auto data = nlohmann::json::parse(text).at("data");
  std::vector<QImage> pictures;
  for (const char* member : {"leftPanel", "newFeature"}) {
    for (const auto& entry : data.at(member)) {
      const std::string bytes = base64(entry.get_ref<const std::string&>());
      pictures.push_back(
          QImage::fromData(reinterpret_cast<const uchar*>(bytes.data()), static_cast<int>(bytes.size())));
    }
  }
  return pictures.size();
}

/// Seconds that the action takes, without destroying its result.
template <typename Action>
double seconds(const Action& action) {
  const auto start = Clock::now();
  action();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

void measure(const char* file) {
  std::ifstream stream(file);
  const std::string reply = encryptToBase64(std::string(std::istreambuf_iterator(stream), {})).value();
  std::array<double, kRounds> ours{};
  std::array<double, kRounds> direct{};
  std::size_t pictures = 0;
  for (int i = 0; i < kRounds; ++i) {
    test::FakeRunLoop loop;
    test::FakeBackgroundWork work(loop);
    test::FakeWallClock clock(loop);
    test::FakeSettingsSuite suite;
    test::FakeSettingsSuite defaults;
    NotificationCenter center;
    std::vector<test::FakeHTTPSession::Request> requests;
    const auto makeSession = [&](const HTTPSessionConfiguration&) {
      return std::make_unique<test::FakeHTTPSession>(loop, requests);
    };
    WebModel client({suite, defaults, loop, work, clock, center, makeSession, decodeQtImage,
                     [](std::size_t) { return 0; }, "https://service.invalid", "1.0.0.0"});
    client.requestGuideInfo();
    std::optional<std::string> text = reply;
    ours.at(static_cast<std::size_t>(i)) = seconds([&] {
      requests.at(0).reply(std::move(text));
      loop.advance(test::FakeRunLoop::Time(0));
    });
    pictures = client.guideModel->leftPanel.size() + client.guideModel->newFeature.size();
    direct.at(static_cast<std::size_t>(i)) = seconds([&] {
      if (readDirectly(reply) != pictures) {
        throw std::runtime_error("the two read different numbers of pictures");
      }
    });
  }
  std::ranges::sort(ours);
  std::ranges::sort(direct);
  std::printf("%.4f %.4f %zu\n", ours[kRounds / 2], direct[kRounds / 2], pictures);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc != 2) {
      throw std::runtime_error("usage: guide_bench ANSWER.json");
    }
    measure(argv[1]);
    return EXIT_SUCCESS;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "guide_bench: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
