#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace reports {

/// The text as the content of an XML 1.0 element or the value of an attribute in double quotes.
/// What XML cannot hold, and what would act on a terminal, is U+FFFD.
std::string xmlText(std::string_view text);

/// ` name="value"`.
std::string xmlAttribute(const char* name, std::string_view value);

/// What may become very long: it keeps the beginning and the end, whole lines of them, and says how
/// much is missing in between.
class LongText {
 public:
  static constexpr std::size_t kHalf = 8 * 1024;

  void addLine(std::string_view line);
  bool isEmpty() const { return m_head.empty(); }
  std::string text() const;

 private:
  std::string m_head;
  std::string m_tail;
  std::uint64_t m_dropped = 0;  ///< bytes
};

}  // namespace reports
