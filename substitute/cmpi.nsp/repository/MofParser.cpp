#include "substitute/cmpi.nsp/repository/MofParser.h"

#include <algorithm>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/repository/MofValueParser.h"
#include "substitute/cmpi.nsp/repository/TokenStream.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

using NZELVOR20::ECIMType;

struct TypeName {
  std::string_view word;
  ECIMType type;
};

constexpr TypeName kTypeNames[] = {
    {"string", ECIMType::eString},     {"boolean", ECIMType::eBoolean},
    {"uint16", ECIMType::eUint16},     {"uint32", ECIMType::eUint32},
    {"uint64", ECIMType::eUint64},     {"uint8", ECIMType::eUint8},
    {"datetime", ECIMType::eDateTime}, {"sint8", ECIMType::eSint8},
    {"sint16", ECIMType::eSint16},     {"sint32", ECIMType::eSint32},
    {"sint64", ECIMType::eSint64},     {"real32", ECIMType::eReal32},
    {"real64", ECIMType::eReal64},     {"char16", ECIMType::eChar16},
    {"object", ECIMType::eInstance},
};

const TypeName* findType(const Token& token) noexcept {
  for (const TypeName& candidate : kTypeNames) {
    if (token.isWord(candidate.word)) return &candidate;
  }
  return nullptr;
}

/// The namespace in a path to one: without scheme, host and leading slash.
std::string namespaceIn(std::string_view path) {
  const std::size_t host = path.find("//");
  if (host != std::string_view::npos) {
    const std::size_t end = path.find('/', host + 2);
    path.remove_prefix(end == std::string_view::npos ? path.size() : end);
  }
  while (!path.empty() && path.front() == '/') path.remove_prefix(1);
  return std::string(path);
}

/// Recursive descent over the declarations of one file; each function reads one rule of the
/// grammar.
class Parser {
 public:
  Parser(std::string_view source, CompilationUnit& unit, std::string nameSpace = std::string())
      : m_tokens(source),
        m_unit(unit),
        m_nameSpace(std::move(nameSpace)),
        m_values(m_tokens, m_nameSpace) {}

  void parseFile(std::vector<substitute::Problem>& problems) {
    while (m_tokens.peek().kind != TokenKind::eEnd) {
      m_tokens.startDeclaration();
      try {
        parseDeclaration();
      } catch (const SyntaxError& error) {
        problems.push_back({m_unit.file, error.at.line, error.at.column, error.message});
        m_tokens.recover();
      }
    }
  }

  InstanceSyntax parseSingleInstance() {
    m_tokens.startDeclaration();
    m_values.parseQualifiers();
    InstanceSyntax instance = m_values.parseInstance();
    m_tokens.take(';');
    if (m_tokens.peek().kind != TokenKind::eEnd) m_tokens.fail("nothing behind the instance");
    return instance;
  }

 private:
  void parseDeclaration() {
    if (m_tokens.take(';')) return;
    if (m_tokens.take('#')) return parsePragma();
    if (m_tokens.peek().isWord("qualifier")) return parseQualifierType();
    std::vector<QualifierSyntax> qualifiers = m_values.parseQualifiers();
    if (m_tokens.peek().isWord("class")) {
      ClassSyntax parsed = parseClass(std::move(qualifiers));
      m_unit.classes.push_back(std::move(parsed));
    } else if (m_tokens.peek().isWord("instance")) {
      InstanceSyntax parsed = m_values.parseInstance();
      m_tokens.expect(';', "after the instance");
      m_unit.instances.push_back(std::move(parsed));
    } else {
      m_tokens.fail("a class, an instance, a qualifier declaration or a pragma");
    }
  }

  /// Pragmas that mean nothing here are passed over, whatever they hold.
  void parsePragma() {
    m_tokens.expectWord("pragma");
    const Position at = m_tokens.peek().at;
    const std::string name = vorcore::nameKey(m_tokens.expectName("the name of the pragma"));
    if (name != "include" && name != "namespace") return skipPragmaValue();
    m_tokens.expect('(', "before the pragma's value");
    if (m_tokens.peek().kind != TokenKind::eString) m_tokens.fail("a string");
    std::string value = m_values.parseStringPieces();
    m_tokens.expect(')', "after the pragma's value");
    std::replace(value.begin(), value.end(), '\\', '/');
    if (name == "include") {
      m_unit.includes.push_back({std::move(value), m_nameSpace, at});
    } else {
      m_nameSpace = namespaceIn(value);
    }
  }

  /// Some vendors' pragmas have several values, or none and not even parentheses.
  void skipPragmaValue() {
    if (!m_tokens.take('(')) return;
    for (int depth = 1; depth > 0;) {
      const Token token = m_tokens.peek();
      if (token.kind == TokenKind::eEnd || token.is('#') || token.is(';')) {
        m_tokens.fail("\")\" after the pragma's value");
      }
      if (token.is('(')) ++depth;
      if (token.is(')')) --depth;
      m_tokens.next();
    }
  }

  void parseQualifierType() {
    QualifierTypeSyntax declared;
    m_tokens.next();
    declared.at = m_tokens.peek().at;
    declared.name = m_tokens.expectName("the name of the qualifier");
    m_tokens.expect(':', "after the qualifier's name");
    const TypeName* type = findType(m_tokens.peek());
    if (type == nullptr) m_tokens.fail("the type of the qualifier");
    declared.type.type = type->type;
    m_tokens.next();
    declared.type.isArray = parseArrayMark();
    if (m_tokens.take('=')) declared.initial = m_values.parseInitializer();
    while (m_tokens.take(',')) parseScopeOrFlavor(declared.flavors);
    m_tokens.expect(';', "after the qualifier declaration");
    m_unit.qualifierTypes.push_back(std::move(declared));
  }

  void parseScopeOrFlavor(Flavors& flavors) {
    const bool isFlavor = m_tokens.peek().isWord("flavor");
    if (!isFlavor && !m_tokens.peek().isWord("scope")) m_tokens.fail("\"scope\" or \"flavor\"");
    m_tokens.next();
    m_tokens.expect('(', "before the list");
    do {
      if (isFlavor) {
        m_values.parseFlavor(flavors);
      } else {
        m_tokens.expectName("an element kind");
      }
    } while (m_tokens.take(','));
    m_tokens.expect(')', "after the list");
  }

  ClassSyntax parseClass(std::vector<QualifierSyntax> qualifiers) {
    ClassSyntax parsed;
    parsed.qualifiers = std::move(qualifiers);
    m_tokens.next();
    parsed.at = m_tokens.peek().at;
    parsed.name = m_tokens.expectName("the name of the class");
    if (m_tokens.takeWord("as")) m_values.parseAlias();
    if (m_tokens.take(':')) parsed.superclass = m_tokens.expectName("the name of the superclass");
    m_tokens.expect('{', "before the class body");
    while (!m_tokens.take('}')) parseFeature(parsed);
    m_tokens.expect(';', "after the class body");
    parsed.fingerprint = m_tokens.fingerprint();
    return parsed;
  }

  void parseFeature(ClassSyntax& parsed) {
    constexpr const char* kExpected = "a property, a method or \"}\"";
    PropertySyntax property;
    property.qualifiers = m_values.parseQualifiers();
    if (m_tokens.startsDeclaration()) m_tokens.fail(kExpected);
    property.type = parseType(kExpected);
    property.at = m_tokens.peek().at;
    property.name = m_tokens.expectName("the name of the property or method");
    if (m_tokens.take('(')) {
      parsed.methods.push_back(parseMethod(std::move(property)));
      return;
    }
    property.type.isArray = parseArrayMark() || property.type.isArray;
    if (m_tokens.take('=')) property.initial = m_values.parseInitializer();
    m_tokens.expect(';', "after the property");
    parsed.properties.push_back(std::move(property));
  }

  MethodSyntax parseMethod(PropertySyntax head) {
    MethodSyntax method;
    method.qualifiers = std::move(head.qualifiers);
    method.returnType = std::move(head.type);
    method.name = std::move(head.name);
    method.at = head.at;
    if (!m_tokens.take(')')) {
      do {
        method.parameters.push_back(parseParameter());
      } while (m_tokens.take(','));
      m_tokens.expect(')', "after the parameters");
    }
    m_tokens.expect(';', "after the method");
    return method;
  }

  ParameterSyntax parseParameter() {
    ParameterSyntax parameter;
    parameter.qualifiers = m_values.parseQualifiers();
    parameter.type = parseType("the type of a parameter");
    parameter.at = m_tokens.peek().at;
    parameter.name = m_tokens.expectName("the name of the parameter");
    parameter.type.isArray = parseArrayMark() || parameter.type.isArray;
    return parameter;
  }

  TypeSyntax parseType(const char* expected) {
    TypeSyntax parsed;
    const Token first = m_tokens.peek();
    if (first.kind != TokenKind::eWord) m_tokens.fail(expected);
    m_tokens.next();
    if (const TypeName* known = findType(first)) {
      parsed.type = known->type;
      if (known->type == ECIMType::eInstance && m_tokens.take(':')) {
        parsed.referenceClass = m_tokens.expectName("the class of the object");
      }
      parsed.isArray = parseArrayMark();
      return parsed;
    }
    parsed.type = ECIMType::eReference;
    if (first.isWord("ref")) return parsed;
    parsed.referenceClass = first.text;
    if (!m_tokens.takeWord("ref")) {
      throw SyntaxError{first.at, "expected a type or a class before \"REF\", found \"" +
                                      parsed.referenceClass + "\""};
    }
    return parsed;
  }

  bool parseArrayMark() {
    if (!m_tokens.take('[')) return false;
    if (m_tokens.peek().kind == TokenKind::eInteger) m_tokens.next();
    m_tokens.expect(']', "after the size of the array");
    return true;
  }

  TokenStream m_tokens;
  CompilationUnit& m_unit;
  std::string m_nameSpace;  ///< of the pragma in force; empty for the default one
  MofValueParser m_values;
};

}  // namespace

CompilationUnit parseMof(const std::string& file, std::string_view source,
                         std::vector<substitute::Problem>& problems, const std::string& nameSpace) {
  CompilationUnit unit;
  unit.file = file;
  Parser(source, unit, nameSpace).parseFile(problems);
  return unit;
}

InstanceSyntax parseInstance(std::string_view source) {
  CompilationUnit unit;
  try {
    return Parser(source, unit).parseSingleInstance();
  } catch (const SyntaxError& error) {
    throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(
        NZELVOR20::eVORInvalidParameter, "embedded instance, " + std::to_string(error.at.line) +
                                             ":" + std::to_string(error.at.column) + ": " +
                                             error.message));
  }
}

}  // namespace cmpinsp
