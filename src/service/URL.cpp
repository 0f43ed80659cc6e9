#include "service/URL.h"

#include <algorithm>

#include "base/PercentCoding.h"

namespace quilex {

namespace {

constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kMarks = "-._~!$&'()*+,;=%";

bool contains(std::string_view set, char character) {
  return set.find(character) != std::string_view::npos;
}

/// Letters, digits, marks and escapes, and the characters of `alsoAllowed`.
bool isComponent(std::string_view text, std::string_view alsoAllowed) {
  return percentDecoded(text) && std::ranges::all_of(text, [&](char c) {
           return contains(kLetters, c) || contains(kDigits, c) || contains(kMarks, c) || contains(alsoAllowed, c);
         });
}

bool isScheme(std::string_view text) {
  return !text.empty() && contains(kLetters, text.front()) && std::ranges::all_of(text, [](char c) {
    return contains(kLetters, c) || contains(kDigits, c) || contains("+-.", c);
  });
}

bool isAuthority(std::string_view text) {
  if (const auto at = text.find('@'); at != std::string_view::npos) {
    if (!isComponent(text.substr(0, at), ":")) {
      return false;
    }
    text = text.substr(at + 1);
  }
  if (const auto colon = text.rfind(':'); colon != std::string_view::npos && !text.ends_with(']')) {
    if (text.substr(colon + 1).find_first_not_of(kDigits) != std::string_view::npos) {
      return false;
    }
    text = text.substr(0, colon);
  }
  if (text.starts_with('[')) {
    // An IPv6 literal, whose groups are not checked.
    return text.size() > 2 && text.ends_with(']') && isComponent(text.substr(1, text.size() - 2), ":");
  }
  return isComponent(text, "");
}

bool isHierarchy(std::string_view text) {
  if (text.starts_with("//")) {
    const std::string_view authority = text.substr(2, text.substr(2).find('/'));
    return isAuthority(authority) && isComponent(text.substr(2 + authority.size()), ":@/");
  }
  return isComponent(text, ":@/");
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
  std::string_view rest = text;
  const auto takeFrom = [&](char separator) {
    const auto position = std::min(rest.find(separator), rest.size());
    const auto taken = rest.substr(position);
    rest = rest.substr(0, position);
    return taken.substr(taken.empty() ? 0 : 1);
  };
  const std::string_view fragment = takeFrom('#');
  const std::string_view query = takeFrom('?');
  if (const auto colon = rest.find(':'); colon != std::string_view::npos && colon < rest.find('/')) {
    if (!isScheme(rest.substr(0, colon))) {
      return {};
    }
    rest = rest.substr(colon + 1);
  }
  if (text.empty() || !isHierarchy(rest) || !isComponent(query, ":@/?") || !isComponent(fragment, ":@/?")) {
    return {};
  }
  return URL(text);
}

}  // namespace quilex
