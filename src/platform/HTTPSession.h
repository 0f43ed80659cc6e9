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
  /// A request fails when no data has come for this long.
  std::chrono::milliseconds timeout;
  /// A request fails when it has taken this long as a whole.
  std::chrono::milliseconds longest;
};

struct HTTPRequest {
  /// Absolute.
  std::string url;
  std::string contentType;
  std::string body;
  /// In bytes; a request fails as soon as the reply's body is larger.
  std::size_t maximumReplySize;
};

/// Sends requests independently of each other. None waits for another, and none is ever sent twice. Main thread.
class HTTPSession {
 public:
  /// Drops the requests that are under way, without calling their replies.
  virtual ~HTTPSession() = default;
  /// Posts the body. `reply` is called once, never from inside this call, with the answer's body as UTF-8 text,
  /// whatever the HTTP status; or with nothing if there is no answer or it is no text.
  virtual void post(const HTTPRequest& request, std::function<void(std::optional<std::string> text)> reply) = 0;
};

/// Makes a session, which the caller owns. Never null.
using HTTPSessionFactory = std::function<std::unique_ptr<HTTPSession>(const HTTPSessionConfiguration&)>;

}  // namespace quilex
