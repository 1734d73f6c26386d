#include "reports/junit/XmlText.h"

#include "text/SafeText.h"
#include "text/Utf8.h"

namespace reports {
namespace {

bool isForbidden(std::uint32_t code) {
  if (code < 0x20) return code != '\n' && code != '\t' && code != '\r';
  return text::actsUnseen(code);
}

/// Line breaks and tabs in an attribute become blanks in a parser, a carriage return anywhere a
/// line break, unless they are written so.
const char* entityOf(std::uint32_t code) {
  switch (code) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\r':
      return "&#13;";
    default:
      return nullptr;
  }
}

const char* attributeEntityOf(std::uint32_t code) {
  if (code == '\n') return "&#10;";
  if (code == '\t') return "&#9;";
  return entityOf(code);
}

std::string escaped(std::string_view text, const char* (*entity)(std::uint32_t)) {
  std::string safe;
  safe.reserve(text.size());
  while (!text.empty()) {
    const text::Character character = text::firstCharacter(text);
    if (const char* const name = entity(character.code)) {
      safe += name;
    } else {
      text::appendUtf8(safe, isForbidden(character.code) ? text::kReplacement : character.code);
    }
    text.remove_prefix(character.length);
  }
  return safe;
}

/// The beginning of a line that is kept of one that would need all the room there is.
std::string_view shortened(std::string_view line) { return line.substr(0, LongText::kHalf / 4); }

}  // namespace

std::string xmlText(std::string_view text) { return escaped(text, entityOf); }

std::string xmlAttribute(const char* name, std::string_view value) {
  return std::string(" ") + name + "=\"" + escaped(value, attributeEntityOf) + "\"";
}

void LongText::addLine(std::string_view line) {
  const std::string_view kept = shortened(line);
  m_dropped += line.size() - kept.size();
  std::string& where = m_tail.empty() && m_head.size() + kept.size() < kHalf ? m_head : m_tail;
  where.append(kept);
  where += '\n';
  // Rarely, and much at once: what is dropped is moved over.
  if (m_tail.size() < 2 * kHalf) return;
  const std::size_t cut = m_tail.find('\n', m_tail.size() - kHalf) + 1;
  m_dropped += cut;
  m_tail.erase(0, cut);
}

std::string LongText::text() const {
  if (m_dropped == 0) return m_head + m_tail;
  return m_head + "[" + std::to_string(m_dropped) + " bytes are left out]\n" + m_tail;
}

}  // namespace reports
