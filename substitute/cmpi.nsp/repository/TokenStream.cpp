#include "substitute/cmpi.nsp/repository/TokenStream.h"

namespace cmpinsp {

namespace {

constexpr std::uint64_t kFingerprintSeed = 0xCBF29CE484222325ULL;
constexpr std::uint64_t kFingerprintPrime = 0x100000001B3ULL;
constexpr std::size_t kLongestQuotation = 40;

std::string shortened(std::string_view text) {
  if (text.size() <= kLongestQuotation) return std::string(text);
  std::size_t end = kLongestQuotation;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return std::string(text.substr(0, end)) + "...";
}

std::string describe(const Token& token) {
  switch (token.kind) {
    case TokenKind::eEnd:
      return "the end of the file";
    case TokenKind::eInvalid:
      return std::string(token.text);
    case TokenKind::eString:
      return "the string \"" + shortened(token.text) + "\"";
    case TokenKind::eAlias:
      return "\"$" + shortened(token.text) + "\"";
    default:
      return "\"" + shortened(token.text) + "\"";
  }
}

}  // namespace

TokenStream::TokenStream(std::string_view source) : m_lexer(source), m_token(m_lexer.next()) {}

void TokenStream::mix(const Token& token) noexcept {
  const auto add = [this](unsigned byte) {
    m_fingerprint = (m_fingerprint ^ byte) * kFingerprintPrime;
  };
  const bool isWord = token.kind == TokenKind::eWord;
  add(static_cast<unsigned>(token.kind));
  for (const char c : token.text) {
    const auto byte = static_cast<unsigned char>(c);
    add(isWord && byte >= 'A' && byte <= 'Z' ? byte + 32U : byte);
  }
}

/// Called while `taken` is still the current token.
void TokenStream::noteBlock(const Token& taken) noexcept {
  if (taken.is('[')) {
    m_block = Mark{m_lexer, taken};
    m_blockEnded = false;
  } else if (m_blockEnded) {
    m_block.reset();
    m_blockEnded = false;
  } else if (taken.is(']')) {
    m_blockEnded = m_block.has_value();
  }
}

Token TokenStream::next() {
  const Token taken = m_token;
  if (taken.is('{')) ++m_depth;
  if (taken.is('}')) --m_depth;
  mix(taken);
  noteBlock(taken);
  m_token = m_lexer.next();
  return taken;
}

bool TokenStream::take(char punctuation) {
  if (!m_token.is(punctuation)) return false;
  next();
  return true;
}

bool TokenStream::takeWord(std::string_view lowerCaseWord) {
  if (!m_token.isWord(lowerCaseWord)) return false;
  next();
  return true;
}

void TokenStream::expect(char punctuation, std::string_view where) {
  if (!take(punctuation)) fail(std::string("\"") + punctuation + "\" " + std::string(where));
}

void TokenStream::expectWord(std::string_view lowerCaseWord) {
  if (!takeWord(lowerCaseWord)) fail("\"" + std::string(lowerCaseWord) + "\"");
}

std::string TokenStream::expectName(std::string_view what) {
  if (m_token.kind != TokenKind::eWord) fail(std::string(what));
  return std::string(next().text);
}

void TokenStream::fail(const std::string& expected) const {
  throw SyntaxError{m_token.at, "expected " + expected + ", found " + describe(m_token)};
}

void TokenStream::startDeclaration() noexcept {
  m_depth = 0;
  m_fingerprint = kFingerprintSeed;
  m_start = m_token.text.data();
  m_block.reset();
  m_blockEnded = false;
}

/// That is `class Name :`, `class Name {`, `class Name as`, `Qualifier Name :` and `#pragma`.
bool TokenStream::startsDeclaration() const {
  MofLexer ahead = m_lexer;
  if (m_token.is('#')) return ahead.next().isWord("pragma");
  const bool isClass = m_token.isWord("class");
  if (!isClass && !m_token.isWord("qualifier")) return false;
  if (ahead.next().kind != TokenKind::eWord) return false;
  const Token third = ahead.next();
  return third.is(':') || (isClass && (third.is('{') || third.isWord("as")));
}

/// The qualifiers in front of the next class are read again with it, unless they are what the
/// faulty declaration began with.
void TokenStream::recover() {
  while (m_token.kind != TokenKind::eEnd) {
    if (startsDeclaration()) {
      if (m_blockEnded && m_block->token.text.data() != m_start) {
        m_lexer = m_block->lexer;
        m_token = m_block->token;
      }
      break;
    }
    if (next().is(';') && m_depth <= 0) break;
  }
  startDeclaration();
}

}  // namespace cmpinsp
