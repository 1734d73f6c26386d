#include "text/JsonText.h"

#include <charconv>
#include <cmath>

#include "text/SafeJson.h"
#include "text/SafeText.h"
#include "text/Utf8.h"

namespace text {
namespace {

/// One that stands in a JSON text as it is, and is ASCII.
bool isPlain(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= 0x20 && value < 0x7F && byte != '"' && byte != '\\';
}

void appendAscii(std::string& text, char byte) {
  switch (byte) {
    case '"':
    case '\\':
      text += '\\';
      text += byte;
      return;
    case '\b':
      text += "\\b";
      return;
    case '\f':
      text += "\\f";
      return;
    case '\n':
      text += "\\n";
      return;
    case '\t':
      text += "\\t";
      return;
    case '\r':
      text += "\\r";
      return;
    default:
      appendJsonEscape(text, static_cast<unsigned char>(byte));
  }
}

template <typename Number>
void appendNumber(std::string& text, Number number) {
  char digits[40];
  const std::to_chars_result end = std::to_chars(std::begin(digits), std::end(digits), number);
  text.append(digits, end.ptr);
}

}  // namespace

void JsonText::quote(std::string_view text) {
  m_text += '"';
  while (!text.empty()) {
    std::size_t plain = 0;
    while (plain < text.size() && isPlain(text[plain])) ++plain;
    m_text.append(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) break;
    const Character character = firstCharacter(text);
    if (character.code < 0x7F) {
      appendAscii(m_text, text.front());
    } else if (actsUnseen(character.code)) {
      appendJsonEscape(m_text, character.code);
    } else {
      appendUtf8(m_text, character.code);
    }
    text.remove_prefix(character.length);
  }
  m_text += '"';
}

void JsonText::begin(std::string_view name) {
  if (!m_first) m_text += ',';
  m_first = false;
  if (name.data() == nullptr) return;
  quote(name);
  m_text += ':';
}

JsonText& JsonText::open(std::string_view name, char bracket) {
  begin(name);
  m_text += bracket;
  m_first = true;
  return *this;
}

JsonText& JsonText::close(char bracket) {
  m_text += bracket;
  m_first = false;
  return *this;
}

JsonText& JsonText::add(std::string_view name, std::string_view text) {
  begin(name);
  quote(text);
  return *this;
}

JsonText& JsonText::add(std::string_view name, std::uint64_t number) {
  begin(name);
  appendNumber(m_text, number);
  return *this;
}

JsonText& JsonText::add(std::string_view name, std::int64_t number) {
  begin(name);
  appendNumber(m_text, number);
  return *this;
}

JsonText& JsonText::addNumeral(std::string_view name, std::string_view numeral) {
  begin(name);
  m_text += numeral;
  return *this;
}

JsonText& JsonText::add(std::string_view name, bool flag) {
  begin(name);
  m_text += flag ? "true" : "false";
  return *this;
}

JsonText& JsonText::add(std::string_view name, double number) {
  if (!std::isfinite(number)) {
    return add(name, std::isnan(number) ? "nan" : (number > 0 ? "inf" : "-inf"));
  }
  begin(name);
  appendNumber(m_text, number);
  return *this;
}

}  // namespace text
