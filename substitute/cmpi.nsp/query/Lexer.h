#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "framework/TCIMValue.h"

namespace cmpinsp::query {

struct Token {
  enum class Kind : std::uint8_t { kEnd, kName, kText, kNumber, kSymbol };

  Kind kind = Kind::kEnd;
  std::size_t position = 1;    ///< in the query, counted from 1 in bytes
  std::string text;            ///< as written; of a text, what it says
  NZELVOR20::TCIMValue value;  ///< of texts and numbers
};

/// Cuts a query into tokens. The text has to outlive it.
class Lexer {
 public:
  explicit Lexer(std::string_view text) : m_text(text) {}

  /// The next token. Throws `QueryError` (syntax).
  Token next();

 private:
  bool has(std::size_t ahead) const { return m_at + ahead < m_text.size(); }
  char peek(std::size_t ahead = 0) const { return has(ahead) ? m_text[m_at + ahead] : '\0'; }
  bool startsNumber() const;
  Token readName(Token token);
  Token readText(Token token);
  Token readNumber(Token token);
  Token readSymbol(Token token);

  std::string_view m_text;
  std::size_t m_at = 0;
};

/// Throws `QueryError` (syntax) that names the position.
[[noreturn]] void failAt(std::size_t position, const std::string& what);

}  // namespace cmpinsp::query
