#include "substitute/cmpi.nsp/repository/MofLexer.h"

namespace cmpinsp {

namespace {

bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

bool isLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// Bytes above 127 belong to names too: they are the letters of other alphabets.
bool startsWord(char c) noexcept {
  return isLetter(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

bool continuesWord(char c) noexcept { return startsWord(c) || isDigit(c); }

bool isBlank(char c) noexcept {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

char lower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

}  // namespace

bool Token::isWord(std::string_view lowerCaseWord) const noexcept {
  if (kind != TokenKind::eWord || text.size() != lowerCaseWord.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (lower(text[i]) != lowerCaseWord[i]) return false;
  }
  return true;
}

Position MofLexer::position() const noexcept {
  return {m_line, static_cast<std::uint32_t>(m_at - m_lineStart + 1)};
}

void MofLexer::advance() noexcept {
  if (m_source[m_at++] == '\n') {
    ++m_line;
    m_lineStart = m_at;
  }
}

bool MofLexer::skipBlockComment() noexcept {
  const std::size_t end = m_source.find("*/", m_at + 2);
  if (end == std::string_view::npos) return false;
  while (m_at < end + 2) advance();
  return true;
}

bool MofLexer::skipBlanks() noexcept {
  while (m_at < m_source.size()) {
    if (isBlank(peek())) {
      advance();
    } else if (peek() == '/' && peek(1) == '/') {
      while (m_at < m_source.size() && peek() != '\n') ++m_at;
    } else if (peek() == '/' && peek(1) == '*') {
      if (!skipBlockComment()) return false;
    } else {
      break;
    }
  }
  return true;
}

Token MofLexer::word(TokenKind kind, std::size_t start, Position at) noexcept {
  while (m_at < m_source.size() && continuesWord(peek())) ++m_at;
  return {kind, m_source.substr(start, m_at - start), at};
}

bool MofLexer::startsNumber() const noexcept {
  const std::size_t digit = peek() == '+' || peek() == '-' ? 1 : 0;
  return isDigit(peek(digit)) || (peek(digit) == '.' && isDigit(peek(digit + 1)));
}

Token MofLexer::number(Position at) noexcept {
  const std::size_t start = m_at;
  bool isReal = false;
  if (!isDigit(peek()) && peek() != '.') ++m_at;
  const bool isHexadecimal = peek() == '0' && lower(peek(1)) == 'x';
  while (continuesWord(peek()) || (peek() == '.' && !isHexadecimal)) {
    const char c = peek();
    isReal = isReal || c == '.';
    ++m_at;
    const bool exponent = isReal && lower(c) == 'e';
    if (exponent && (peek() == '+' || peek() == '-')) ++m_at;
  }
  const TokenKind kind = isReal ? TokenKind::eReal : TokenKind::eInteger;
  return {kind, m_source.substr(start, m_at - start), at};
}

Token MofLexer::quoted(char quote, Position at) noexcept {
  const std::size_t start = m_at + 1;
  advance();
  while (m_at < m_source.size() && peek() != quote) {
    if (peek() == '\\' && m_at + 1 < m_source.size()) advance();
    advance();
  }
  if (m_at >= m_source.size()) {
    return {TokenKind::eInvalid, quote == '"' ? "a string without end" : "a character without end",
            at};
  }
  const Token token{quote == '"' ? TokenKind::eString : TokenKind::eCharacter,
                    m_source.substr(start, m_at - start), at};
  ++m_at;
  return token;
}

Token MofLexer::next() noexcept {
  if (!skipBlanks()) {
    const Position at = position();
    m_at = m_source.size();
    return {TokenKind::eInvalid, "a comment without end", at};
  }
  const Position at = position();
  if (m_at >= m_source.size()) return {TokenKind::eEnd, {}, at};
  const char c = peek();
  if (startsWord(c)) return word(TokenKind::eWord, m_at, at);
  if (startsNumber()) return number(at);
  if (c == '"' || c == '\'') return quoted(c, at);
  if (c == '$' && startsWord(peek(1))) {
    ++m_at;
    return word(TokenKind::eAlias, m_at, at);
  }
  ++m_at;
  return {TokenKind::ePunctuation, m_source.substr(m_at - 1, 1), at};
}

}  // namespace cmpinsp
