#include "substitute/cmpi.nsp/query/LikePattern.h"

#include <algorithm>

#include "substitute/cmpi.nsp/query/QueryError.h"

namespace cmpinsp::query {
namespace {

/// What a byte that belongs to no character counts as: no character has such a number.
constexpr char32_t kStrayByte = 0x110000;

unsigned byteAt(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]);
}

/// How many bytes the character has that starts with `first`; 1 for what starts none.
std::size_t lengthOf(unsigned first) {
  if (first >= 0xF0 && first < 0xF8) return 4;
  if (first >= 0xE0 && first < 0xF0) return 3;
  return first >= 0xC0 && first < 0xE0 ? 2 : 1;
}

char32_t next(std::string_view text, std::size_t& at) {
  const unsigned first = byteAt(text, at++);
  if (first < 0x80) return first;
  const std::size_t length = lengthOf(first);
  const std::size_t end = at + length - 1;
  char32_t character = first & (0x7FU >> length);
  bool isWhole = length > 1 && end <= text.size();
  for (std::size_t i = at; isWhole && i < end; ++i) {
    isWhole = (byteAt(text, i) & 0xC0U) == 0x80U;
    character = character * 64 + (byteAt(text, i) & 0x3FU);
  }
  if (!isWhole) return kStrayByte + first;
  at = end;
  return character;
}

std::u32string charactersOf(std::string_view text) {
  std::u32string characters;
  characters.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) characters.push_back(next(text, at));
  return characters;
}

}  // namespace

bool LikePattern::Element::takes(char32_t character) const {
  if (kind == Kind::kAnyOne) return true;
  const bool isListed = std::any_of(ranges.begin(), ranges.end(), [&](const auto& range) {
    return range.first <= character && character <= range.second;
  });
  return isListed == (kind != Kind::kNotInSet);
}

/// `at` is behind the opening bracket, and then behind the closing one.
LikePattern::Element LikePattern::readSet(const std::u32string& text, std::size_t& at) {
  Element set;
  set.kind = Kind::kSet;
  const auto one = [&] {
    if (at < text.size() && text[at] == U'\\') ++at;
    if (at >= text.size()) throw QueryError(Refusal::kSyntax, "a set in a pattern has no end");
    return text[at++];
  };
  if (at < text.size() && text[at] == U'^') {
    set.kind = Kind::kNotInSet;
    ++at;
  }
  do {
    const char32_t first = one();
    char32_t last = first;
    if (at + 1 < text.size() && text[at] == U'-' && text[at + 1] != U']') {
      ++at;
      last = one();
    }
    if (last < first) throw QueryError(Refusal::kSyntax, "a range in a pattern runs backwards");
    set.ranges.emplace_back(first, last);
  } while (at >= text.size() || text[at] != U']');
  ++at;
  return set;
}

LikePattern LikePattern::parse(std::string_view text) {
  const std::u32string characters = charactersOf(text);
  LikePattern pattern;
  for (std::size_t at = 0; at < characters.size();) {
    Element element;
    char32_t character = characters[at++];
    if (character == U'%') {
      element.kind = Kind::kAnyRun;
    } else if (character == U'_') {
      element.kind = Kind::kAnyOne;
    } else if (character == U'[') {
      element = readSet(characters, at);
    } else {
      if (character == U'\\' && at < characters.size()) character = characters[at++];
      element.ranges.emplace_back(character, character);
    }
    pattern.m_elements.push_back(std::move(element));
  }
  return pattern;
}

/// Goes on from the last "%" when something does not fit; what an earlier one took need never be
/// taken up again.
bool LikePattern::matches(std::string_view text) const {
  const std::u32string characters = charactersOf(text);
  std::size_t element = 0;
  std::size_t behindRun = 0;  // 0: no "%" has come
  std::size_t runEnd = 0;
  for (std::size_t at = 0; at < characters.size();) {
    if (element < m_elements.size() && m_elements[element].kind == Kind::kAnyRun) {
      behindRun = ++element;
      runEnd = at;
    } else if (element < m_elements.size() && m_elements[element].takes(characters[at])) {
      ++element;
      ++at;
    } else if (behindRun != 0) {
      element = behindRun;
      at = ++runEnd;
    } else {
      return false;
    }
  }
  return std::all_of(m_elements.begin() + static_cast<std::ptrdiff_t>(element), m_elements.end(),
                     [](const Element& one) { return one.kind == Kind::kAnyRun; });
}

}  // namespace cmpinsp::query
