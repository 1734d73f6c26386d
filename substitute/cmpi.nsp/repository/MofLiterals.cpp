#include "substitute/cmpi.nsp/repository/MofLiterals.h"

#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

#include "substitute/cmpi.nsp/repository/SourceText.h"

namespace cmpinsp {

namespace {

/// The value of a digit in any base up to 16, or 16.
unsigned digitValue(char c) noexcept {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
  return 16;
}

bool readDigits(std::string_view digits, unsigned base, std::uint64_t& magnitude) noexcept {
  if (digits.empty()) return false;
  magnitude = 0;
  for (const char c : digits) {
    const unsigned digit = digitValue(c);
    if (digit >= base) return false;
    if (magnitude > (std::numeric_limits<std::uint64_t>::max() - digit) / base) return false;
    magnitude = magnitude * base + digit;
  }
  return true;
}

/// The character that a one-letter escape stands for, or 0.
char simpleEscape(char letter) noexcept {
  switch (letter) {
    case 'b':
      return '\b';
    case 't':
      return '\t';
    case 'n':
      return '\n';
    case 'f':
      return '\f';
    case 'r':
      return '\r';
    case '"':
    case '\'':
    case '\\':
      return letter;
    default:
      return '\0';
  }
}

/// Reads the digits of a `\x` escape at the start of `text`; how many there were, at most 4.
std::size_t readHexEscape(std::string_view text, unsigned long& code) noexcept {
  std::size_t count = 0;
  code = 0;
  while (count < 4 && count < text.size() && digitValue(text[count]) < 16) {
    code = code * 16 + digitValue(text[count++]);
  }
  return count;
}

}  // namespace

void appendUnescaped(std::string& out, std::string_view literal) {
  out.reserve(out.size() + literal.size());
  while (!literal.empty()) {
    const std::size_t backslash = literal.find('\\');
    out.append(literal.substr(0, backslash));
    if (backslash == std::string_view::npos) return;
    literal.remove_prefix(backslash + 1);
    const char letter = literal.empty() ? '\0' : literal.front();
    unsigned long code = 0;
    const std::size_t digits =
        letter == 'x' || letter == 'X' ? readHexEscape(literal.substr(1), code) : 0;
    if (digits != 0) {
      appendUtf8(out, code);
      literal.remove_prefix(1 + digits);
    } else if (simpleEscape(letter) != '\0') {
      out.push_back(simpleEscape(letter));
      literal.remove_prefix(1);
    } else {
      out.push_back('\\');
    }
  }
}

bool readCharacter(std::string_view literal, std::uint64_t& code) {
  std::string text;
  appendUnescaped(text, literal);
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  if (text.size() == 1 && byte(0) < 0x80) {
    code = byte(0);
  } else if (text.size() == 2 && byte(0) >= 0xC0) {
    code = (byte(0) & 0x1FU) * 64U + (byte(1) & 0x3FU);
  } else if (text.size() == 3 && byte(0) >= 0xE0) {
    code = (byte(0) & 0x0FU) * 4096U + (byte(1) & 0x3FU) * 64U + (byte(2) & 0x3FU);
  } else {
    return false;
  }
  std::string again;
  appendUtf8(again, static_cast<unsigned long>(code));
  return again == text;
}

bool readInteger(std::string_view literal, bool& negative, std::uint64_t& magnitude) {
  negative = !literal.empty() && literal.front() == '-';
  if (negative || (!literal.empty() && literal.front() == '+')) literal.remove_prefix(1);
  if (literal.empty()) return false;
  const bool leadingZero = literal.front() == '0' && literal.size() > 1;
  if (leadingZero && (literal[1] == 'x' || literal[1] == 'X')) {
    return readDigits(literal.substr(2), 16, magnitude);
  }
  if (literal.back() == 'b' || literal.back() == 'B') {
    return readDigits(literal.substr(0, literal.size() - 1), 2, magnitude);
  }
  return readDigits(literal, leadingZero ? 8 : 10, magnitude);
}

bool readReal(std::string_view literal, double& value) {
  std::istringstream stream{std::string(literal)};
  stream.imbue(std::locale::classic());
  stream >> value;
  return !stream.fail() && stream.peek() == std::istringstream::traits_type::eof() &&
         std::isfinite(value);
}

}  // namespace cmpinsp
