#pragma once

#include <cstring>
#include <string>
#include <utility>

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"

namespace cmpinsp::broker {

/// A text that the provider may write into, within its length.
class StringBody final : public Body {
 public:
  using Object = CMPIString;
  static constexpr Kind kKind = Kind::kString;

  explicit StringBody(std::string text) : m_text(std::move(text)) {}
  StringBody(const StringBody& other) : Body(), m_text(other.text(), other.length()) {}

  void* shownTo(Handle&) noexcept override { return text(); }

  char* text() noexcept { return m_text.data(); }
  const char* text() const noexcept { return m_text.data(); }
  /// Up to the first zero byte, wherever the provider put it.
  std::size_t length() const noexcept {
    const void* end = std::memchr(m_text.data(), 0, m_text.size());
    return end == nullptr ? m_text.size()
                          : static_cast<std::size_t>(static_cast<const char*>(end) - text());
  }
  std::string copy() const { return std::string(text(), length()); }

 private:
  std::string m_text;
};

/// The child string of `parent` with this text: an old one where `parent` outlives the call.
Handle& makeChildString(Handle& parent, const char* text, std::size_t length);

/// A string of the innermost scope, repaired to UTF-8; null gives an empty one.
CMPIString* makeString(const char* text);

/// The text of `string`, or nothing where it is no live string.
std::string textOrNothing(const CMPIString* string);

}  // namespace cmpinsp::broker
