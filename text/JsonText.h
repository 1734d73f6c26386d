#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace text {

/// Writes one line of JSON from its beginning to its end, without a tree of values in between:
/// reports are written while tests run. The caller closes what it opens; no name (`{}`) is for the
/// members of lists and the outermost value. Texts come out as UTF-8 in which no character acts on
/// a terminal or ends the line: such ones are escaped, so that a reader gets them back as they
/// were; what is no UTF-8 becomes U+FFFD.
class JsonText {
 public:
  JsonText() = default;
  /// With room for so many bytes from the beginning.
  explicit JsonText(std::size_t room) { m_text.reserve(room); }

  JsonText& object(std::string_view name = {}) { return open(name, '{'); }
  JsonText& list(std::string_view name) { return open(name, '['); }
  JsonText& endObject() { return close('}'); }
  JsonText& endList() { return close(']'); }

  JsonText& add(std::string_view name, std::string_view text);
  JsonText& add(std::string_view name, const char* text) {
    return add(name, std::string_view(text));
  }
  JsonText& add(std::string_view name, const std::string& text) {
    return add(name, std::string_view(text));
  }
  JsonText& add(std::string_view name, std::uint64_t number);
  JsonText& add(std::string_view name, std::int64_t number);
  JsonText& add(std::string_view name, bool flag);
  /// As text where JSON has no such number. Every number is read back as the same `double`.
  JsonText& add(std::string_view name, double number);
  /// A number that somebody else has spelt.
  JsonText& addNumeral(std::string_view name, std::string_view numeral);
  /// Nothing where the text is empty.
  JsonText& addIfAny(std::string_view name, const std::string& text) {
    return text.empty() ? *this : add(name, text);
  }

  const std::string& text() const { return m_text; }
  /// The text, which is not here any more then.
  std::string take() { return std::move(m_text); }

 private:
  JsonText& open(std::string_view name, char bracket);
  JsonText& close(char bracket);
  void begin(std::string_view name);
  void quote(std::string_view text);

  std::string m_text;
  bool m_first = true;  ///< in the innermost list or object
};

}  // namespace text
