#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/model/ObjectPath.h"
#include "substitute/cmpi.nsp/repository/MofLiterals.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

/// Reads one object path. Positions in messages count from 1, in bytes.
class PathParser {
 public:
  explicit PathParser(std::string_view text) : m_slashed(slashed(text)), m_text(text) {
    if (!m_slashed.empty()) m_text = m_slashed;
  }

  ObjectPath parse() {
    ObjectPath path;
    skipAuthority();
    path.nameSpace = readNamespace();
    path.className = readName("a class name");
    if (atEnd()) return path;
    if (m_text.substr(m_at) == "=@") return path;
    expect('.');
    do {
      readKey(path);
    } while (accept(','));
    if (!atEnd()) fail("expected ',' or the end");
    return path;
  }

 private:
  /// The text with "/" for the "\" that some systems write in front of the class; empty where there
  /// is none. Behind a quote or "=" a backslash protects the next byte.
  static std::string slashed(std::string_view text) {
    const std::size_t end = std::min(text.find_first_of("=\"'"), text.size());
    if (text.substr(0, end).find('\\') == std::string_view::npos) return std::string();
    std::string copy(text);
    std::replace(copy.begin(), copy.begin() + static_cast<std::ptrdiff_t>(end), '\\', '/');
    return copy;
  }

  bool atEnd() const { return m_at >= m_text.size(); }
  char current() const { return atEnd() ? '\0' : m_text[m_at]; }

  bool accept(char letter) {
    if (atEnd() || m_text[m_at] != letter) return false;
    ++m_at;
    return true;
  }

  void expect(char letter) {
    if (!accept(letter)) fail(std::string("expected '") + letter + "'");
  }

  [[noreturn]] void fail(const std::string& what) const {
    throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(
        NZELVOR20::eVORInvalidParameter,
        "object path, position " + std::to_string(m_at + 1) + ": " + what));
  }

  /// A scheme and a host say where the broker is; the path within it does not depend on them.
  /// Neither holds a quote or "=", so that a backslash in the namespace behind them is a slash.
  void skipAuthority() {
    std::size_t scheme = 0;
    while (scheme < m_text.size() && isSchemePart(m_text[scheme])) ++scheme;
    if (scheme > 0 && m_text.substr(scheme, 3) == "://") m_at = scheme + 1;
    if (m_text.substr(m_at, 2) != "//") return;
    const std::size_t end = std::min(m_text.find('/', m_at + 2), m_text.size());
    const std::size_t odd = m_text.find_first_of("=\"'", m_at);
    m_at = std::min(odd, end);
    if (odd < end) fail("expected a host name");
  }

  std::string readNamespace() {
    while (accept('/')) {
    }
    const std::size_t colon = m_text.find(':', m_at);
    if (colon == std::string_view::npos || colon > m_text.find_first_of("=\"'.", m_at)) {
      return std::string();
    }
    const std::string name(m_text.substr(m_at, colon - m_at));
    m_at = colon + 1;
    return name;
  }

  static bool isSchemePart(char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '+' || letter == '-';
  }

  static bool isNamePart(char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    return std::isalnum(byte) != 0 || letter == '_' || byte >= 0x80;
  }

  std::string readName(const char* what) {
    const std::size_t start = m_at;
    while (!atEnd() && isNamePart(m_text[m_at])) ++m_at;
    if (m_at == start) fail(std::string("expected ") + what);
    return std::string(m_text.substr(start, m_at - start));
  }

  void readKey(ObjectPath& path) {
    const std::size_t start = m_at;
    const std::string name = readName("a key name");
    if (path.findKey(name) != nullptr) {
      m_at = start;
      fail("key " + name + " is there twice");
    }
    expect('=');
    path.keys.emplace_back(name, readValue());
  }

  TCIMValue readValue() {
    if (current() == '"') return readString();
    if (current() == '\'') return readUnit();
    const std::size_t start = m_at;
    while (!atEnd() && m_text[m_at] != ',') ++m_at;
    const std::string_view literal = m_text.substr(start, m_at - start);
    TCIMValue value;
    if (readBare(literal, value)) return value;
    m_at = start;
    fail("expected a value");
  }

  /// What lies between two `mark`s; a backslash protects the byte behind it.
  std::string_view readBetween(char mark) {
    expect(mark);
    const std::size_t start = m_at;
    while (!atEnd() && m_text[m_at] != mark) m_at += m_text[m_at] == '\\' ? 2 : 1;
    if (atEnd()) {
      m_at = m_text.size();
      fail(std::string("expected ") + mark);
    }
    return m_text.substr(start, m_at++ - start);
  }

  TCIMValue readString() {
    std::string text;
    appendUnescaped(text, readBetween('"'));
    return TCIMValue(std::move(text));
  }

  TCIMValue readUnit() {
    const std::size_t start = m_at;
    std::uint64_t code = 0;
    if (readCharacter(readBetween('\''), code)) {
      return TCIMValue::Char16(static_cast<std::uint16_t>(code));
    }
    m_at = start;
    fail("expected one character");
  }

  static bool readBare(std::string_view literal, TCIMValue& value) {
    const std::string text(literal);
    if (vorcore::equalNames(text, "true") || vorcore::equalNames(text, "false")) {
      value = TCIMValue::Boolean(vorcore::equalNames(text, "true"));
      return true;
    }
    if (vorcore::equalNames(text, "null")) return true;
    return readWhole(literal, value) || readFraction(literal, value);
  }

  static bool readWhole(std::string_view literal, TCIMValue& value) {
    constexpr std::uint64_t kTwoTo63 = std::uint64_t{1} << 63U;
    bool negative = false;
    std::uint64_t magnitude = 0;
    if (!readInteger(literal, negative, magnitude)) return false;
    if (negative && magnitude > kTwoTo63) return false;
    if (!negative && magnitude >= kTwoTo63) {
      value = TCIMValue::Uint64(magnitude);
      return true;
    }
    const std::uint64_t bits = negative ? ~magnitude + 1 : magnitude;
    value = TCIMValue::Signed(ECIMType::eSint64, static_cast<std::int64_t>(bits));
    return true;
  }

  static bool readFraction(std::string_view literal, TCIMValue& value) {
    double real = 0;
    if (literal.find('.') == std::string_view::npos || !readReal(literal, real)) return false;
    value = TCIMValue::Real(ECIMType::eReal64, real);
    return true;
  }

  const std::string m_slashed;
  std::string_view m_text;
  std::size_t m_at = 0;
};

}  // namespace

ObjectPath ObjectPath::parse(const std::string& text) { return PathParser(text).parse(); }

}  // namespace cmpinsp
