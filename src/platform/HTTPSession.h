#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quilex {

struct HTTPSessionConfiguration {
  /// The whole User-Agent header.
  std::string userAgent;
  /// How long a request may wait for further data before it fails.
  std::chrono::milliseconds timeout;
  /// How long a request may take as a whole, however steadily data comes, before it fails.
  std::chrono::milliseconds longest;
};

struct HTTPRequest {
  /// Absolute.
  std::string url;
  std::string contentType;
  std::string body;
  /// A reply whose body is larger, in bytes, fails as soon as so much of it has come.
  std::size_t maximumReplySize;
};

/// Sends requests that stand each alone: none is queued behind another, tried again or sent twice. Main thread.
class HTTPSession {
 public:
  /// Drops the requests that are under way; their replies are not called any more.
  virtual ~HTTPSession() = default;
  /// Posts the body. `reply` is called once, on the main thread and never from inside this call, with the answer's
  /// body as UTF-8 text, whatever the HTTP status, or with nothing when there is no answer or it cannot be read as
  /// text.
  virtual void post(const HTTPRequest& request, std::function<void(std::optional<std::string> text)> reply) = 0;
};

/// Makes a session; the caller owns it. Never answers nothing.
using HTTPSessionFactory = std::function<std::unique_ptr<HTTPSession>(const HTTPSessionConfiguration&)>;

}  // namespace quilex
