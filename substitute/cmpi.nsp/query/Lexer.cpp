#include "substitute/cmpi.nsp/query/Lexer.h"

#include <cctype>
#include <limits>
#include <utility>

#include "substitute/cmpi.nsp/query/QueryError.h"
#include "substitute/cmpi.nsp/repository/MofLiterals.h"

namespace cmpinsp::query {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

constexpr std::string_view kSymbols = "()=<>,*.[]:#+-/|";

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool startsName(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return std::isalpha(byte) != 0 || c == '_' || byte >= 0x80;
}
bool continuesName(char c) { return startsName(c) || isDigit(c); }

/// Zeros in front mean nothing here; `readInteger` would take the digits behind them for octal.
std::string withoutZeros(const std::string& number) {
  const std::size_t sign = number[0] == '-' || number[0] == '+' ? 1 : 0;
  std::size_t zeros = 0;
  while (sign + zeros + 1 < number.size() && number[sign + zeros] == '0' &&
         isDigit(number[sign + zeros + 1])) {
    ++zeros;
  }
  return number.substr(0, sign) + number.substr(sign + zeros);
}

/// Null where the number is none or fits no type.
TCIMValue numberOf(const std::string& text) {
  constexpr std::uint64_t kLowest = std::uint64_t{1} << 63;
  bool isNegative = false;
  std::uint64_t magnitude = 0;
  if (readInteger(withoutZeros(text), isNegative, magnitude)) {
    if (!isNegative) return TCIMValue::Uint64(magnitude);
    if (magnitude > kLowest) return TCIMValue();
    const std::int64_t value = magnitude == kLowest ? std::numeric_limits<std::int64_t>::min()
                                                    : -static_cast<std::int64_t>(magnitude);
    return TCIMValue::Signed(ECIMType::eSint64, value);
  }
  double real = 0;
  const bool looksReal = text.find_first_of(".eE") != std::string::npos;
  return looksReal && readReal(text, real) ? TCIMValue::Real(ECIMType::eReal64, real) : TCIMValue();
}

}  // namespace

void failAt(std::size_t position, const std::string& what) {
  throw QueryError(Refusal::kSyntax, "query, position " + std::to_string(position) + ": " + what);
}

Token Lexer::next() {
  while (has(0) && isSpace(peek())) ++m_at;
  Token token;
  token.position = m_at + 1;
  if (!has(0)) return token;
  if (startsName(peek())) return readName(std::move(token));
  if (peek() == '\'' || peek() == '"') return readText(std::move(token));
  if (startsNumber()) return readNumber(std::move(token));
  return readSymbol(std::move(token));
}

bool Lexer::startsNumber() const {
  const std::size_t sign = peek() == '-' || peek() == '+' ? 1 : 0;
  return isDigit(peek(sign)) || (peek(sign) == '.' && isDigit(peek(sign + 1)));
}

Token Lexer::readName(Token token) {
  const std::size_t start = m_at;
  while (has(0) && continuesName(peek())) ++m_at;
  token.kind = Token::Kind::kName;
  token.text = m_text.substr(start, m_at - start);
  return token;
}

/// A quote within is written with a backslash, or twice.
Token Lexer::readText(Token token) {
  const char quote = m_text[m_at++];
  token.kind = Token::Kind::kText;
  for (;;) {
    const std::size_t start = m_at;
    while (has(0) && peek() != quote) m_at += peek() == '\\' ? 2U : 1U;
    if (!has(0)) failAt(token.position, "the text has no end");
    appendUnescaped(token.text, m_text.substr(start, m_at - start));
    ++m_at;
    if (peek() != quote) break;
    token.text += quote;
    ++m_at;
  }
  token.value = TCIMValue(token.text);
  return token;
}

Token Lexer::readNumber(Token token) {
  const std::size_t start = m_at;
  ++m_at;
  const auto isExponentSign = [&] {
    const bool isHex = m_text.substr(start, m_at - start).find_first_of("xX") != m_text.npos;
    const char before = m_text[m_at - 1];
    return !isHex && (peek() == '-' || peek() == '+') && (before == 'e' || before == 'E');
  };
  while (has(0) && (continuesName(peek()) || peek() == '.' || isExponentSign())) ++m_at;
  token.kind = Token::Kind::kNumber;
  token.text = m_text.substr(start, m_at - start);
  token.value = numberOf(token.text);
  if (token.value.IsNull()) {
    failAt(token.position, "\"" + token.text + "\" is no number that a property could have");
  }
  return token;
}

Token Lexer::readSymbol(Token token) {
  const std::string_view two = m_text.substr(m_at, 2);
  const bool isLong = two == "<>" || two == "!=" || two == "<=" || two == ">=" || two == "::";
  if (!isLong && kSymbols.find(peek()) == std::string_view::npos) {
    failAt(token.position, "unexpected character");
  }
  token.kind = Token::Kind::kSymbol;
  token.text = isLong ? two : two.substr(0, 1);
  m_at += token.text.size();
  return token;
}

}  // namespace cmpinsp::query
