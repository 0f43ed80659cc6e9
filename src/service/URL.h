#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quilex {

/// A text that is a URL, absolute or relative, by the grammar of RFC 3986. The toolkit's parser accepts more, and is
/// not available here.
class URL {
 public:
  /// Nothing when the text is empty or not a URL.
  static std::optional<URL> parse(std::string_view text);

  const std::string& string() const { return text_; }

  bool operator==(const URL&) const = default;

 private:
  explicit URL(std::string_view text) : text_(text) {}

  std::string text_;
};

}  // namespace quilex
