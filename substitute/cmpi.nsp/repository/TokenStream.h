#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "substitute/cmpi.nsp/repository/MofLexer.h"

namespace cmpinsp {

/// The tokens of a file with one token of lookahead, and the way back to solid ground after an
/// error.
class TokenStream {
 public:
  explicit TokenStream(std::string_view source);

  const Token& peek() const noexcept { return m_token; }
  Token next();

  /// Takes the token if it is the punctuation or the word.
  bool take(char punctuation);
  bool takeWord(std::string_view lowerCaseWord);

  /// Takes the punctuation, the word or a name, or throws `SyntaxError`; `where` completes the
  /// message ("after the class body").
  void expect(char punctuation, std::string_view where);
  void expectWord(std::string_view lowerCaseWord);
  std::string expectName(std::string_view what);

  /// Throws `SyntaxError`: "expected X, found Y" at the current token.
  [[noreturn]] void fail(const std::string& expected) const;

  /// Starts a declaration, for `recover` and `fingerprint`.
  void startDeclaration() noexcept;
  /// A number made from the tokens taken since `startDeclaration`.
  std::uint64_t fingerprint() const noexcept { return m_fingerprint; }
  /// True where a declaration plainly begins, however unbalanced the braces before it are.
  bool startsDeclaration() const;
  /// Skips what is left of a faulty declaration: to behind its last ";", or to where the next one
  /// plainly begins.
  void recover();

 private:
  /// A place to come back to.
  struct Mark {
    MofLexer lexer;
    Token token;
  };

  void mix(const Token& token) noexcept;
  void noteBlock(const Token& taken) noexcept;

  MofLexer m_lexer;
  Token m_token;
  int m_depth = 0;  ///< braces opened and not closed since `startDeclaration`
  std::uint64_t m_fingerprint = 0;
  const char* m_start = nullptr;  ///< where the declaration began
  std::optional<Mark> m_block;    ///< the qualifier block that was just read, or is being read
  bool m_blockEnded = false;
};

}  // namespace cmpinsp
