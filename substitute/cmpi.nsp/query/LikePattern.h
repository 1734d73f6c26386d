#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cmpinsp::query {

/// The pattern behind LIKE: "%" stands for any run of characters, "_" for any one, "[a-f]" for one
/// of a set, "[^a-f]" for one that is not; a backslash takes the meaning off the next character.
/// Characters are Unicode's, and case counts.
class LikePattern {
 public:
  /// Throws `QueryError` (syntax) for a set without its end or with a range that runs backwards.
  static LikePattern parse(std::string_view text);

  /// Takes time in proportion to the two lengths multiplied, at worst.
  bool matches(std::string_view text) const;

 private:
  enum class Kind : std::uint8_t { kCharacter, kAnyOne, kAnyRun, kSet, kNotInSet };
  struct Element {
    Kind kind = Kind::kCharacter;
    std::vector<std::pair<char32_t, char32_t>> ranges;  ///< first and last of each

    bool takes(char32_t character) const;
  };
  static Element readSet(const std::u32string& text, std::size_t& at);

  std::vector<Element> m_elements;
};

}  // namespace cmpinsp::query
