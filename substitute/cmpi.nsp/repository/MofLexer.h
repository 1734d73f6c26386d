#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace cmpinsp {

/// A place in a source file; both count from 1, columns in bytes.
struct Position {
  std::uint32_t line = 1;
  std::uint32_t column = 1;
};

/// A fault at a place in a file. It never leaves the reader: what catches it knows the file.
struct SyntaxError {
  Position at;
  std::string message;
};

enum class TokenKind : unsigned char {
  eEnd,
  eWord,         ///< a name or a keyword
  eInteger,      ///< any of the four integer notations, with its sign
  eReal,         ///< a number with a decimal point
  eString,       ///< the text between the quotes, escapes and all
  eCharacter,    ///< the text between the apostrophes, escapes and all
  eAlias,        ///< the name after a "$"
  ePunctuation,  ///< one character
  eInvalid       ///< something that starts no token; `text` says what is wrong with it
};

/// One token; `text` points into the source, or into static storage for an invalid one.
struct Token {
  TokenKind kind = TokenKind::eEnd;
  std::string_view text;
  Position at;

  bool is(char punctuation) const noexcept {
    return kind == TokenKind::ePunctuation && text.front() == punctuation;
  }
  /// True for the word `lowerCaseWord`, whatever its case.
  bool isWord(std::string_view lowerCaseWord) const noexcept;
};

/// Cuts MOF text (DSP0004, annex A) into tokens; comments and blanks fall away. It can be copied
/// to come back to a place. The source outlives the lexer and its tokens.
class MofLexer {
 public:
  explicit MofLexer(std::string_view source) noexcept : m_source(source) {}

  Token next() noexcept;

 private:
  char peek(std::size_t ahead = 0) const noexcept {
    return m_at + ahead < m_source.size() ? m_source[m_at + ahead] : '\0';
  }
  Position position() const noexcept;
  void advance() noexcept;
  /// False when a comment has no end.
  bool skipBlanks() noexcept;
  bool skipBlockComment() noexcept;
  Token word(TokenKind kind, std::size_t start, Position at) noexcept;
  Token number(Position at) noexcept;
  Token quoted(char quote, Position at) noexcept;
  bool startsNumber() const noexcept;

  std::string_view m_source;
  std::size_t m_at = 0;
  std::size_t m_lineStart = 0;
  std::uint32_t m_line = 1;
};

}  // namespace cmpinsp
