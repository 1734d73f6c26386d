#include "substitute/cmpi.nsp/repository/MofParser.h"

#include <algorithm>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/repository/MofLiterals.h"
#include "substitute/cmpi.nsp/repository/TokenStream.h"
#include "substitute/vorcore/ClassDeclaration.h"

namespace cmpinsp {

namespace {

using NZELVOR20::ECIMType;

/// How deep instances may be written inside each other.
constexpr int kDeepestNesting = 32;

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

/// Recursive descent over one file; each function reads one rule of the grammar.
class Parser {
 public:
  Parser(std::string_view source, CompilationUnit& unit, std::string nameSpace = std::string())
      : m_tokens(source), m_unit(unit), m_nameSpace(std::move(nameSpace)) {}

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
    parseQualifiers();
    InstanceSyntax instance = parseInstanceBody(0);
    m_tokens.take(';');
    if (m_tokens.peek().kind != TokenKind::eEnd) m_tokens.fail("nothing behind the instance");
    return instance;
  }

 private:
  void parseDeclaration() {
    if (m_tokens.take(';')) return;
    if (m_tokens.take('#')) return parsePragma();
    if (m_tokens.peek().isWord("qualifier")) return parseQualifierType();
    std::vector<QualifierSyntax> qualifiers = parseQualifiers();
    if (m_tokens.peek().isWord("class")) {
      ClassSyntax parsed = parseClass(std::move(qualifiers));
      m_unit.classes.push_back(std::move(parsed));
    } else if (m_tokens.peek().isWord("instance")) {
      InstanceSyntax parsed = parseInstanceBody(0);
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
    std::string value = parseStringPieces();
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
    if (m_tokens.take('=')) declared.initial = parseInitializer(0);
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
        parseFlavor(flavors);
      } else {
        m_tokens.expectName("an element kind");
      }
    } while (m_tokens.take(','));
    m_tokens.expect(')', "after the list");
  }

  /// Flavors that mean nothing here, as some vendors write them, are passed over.
  void parseFlavor(Flavors& flavors) {
    if (m_tokens.takeWord("tosubclass")) {
      flavors.toSubclass = Choice::eYes;
    } else if (m_tokens.takeWord("restricted") || m_tokens.takeWord("nottosubclass")) {
      flavors.toSubclass = Choice::eNo;
    } else if (m_tokens.takeWord("enableoverride")) {
      flavors.overridable = Choice::eYes;
    } else if (m_tokens.takeWord("disableoverride")) {
      flavors.overridable = Choice::eNo;
    } else if (m_tokens.takeWord("translatable")) {
      flavors.translatable = Choice::eYes;
    } else {
      m_tokens.expectName("a flavor");
    }
  }

  std::vector<QualifierSyntax> parseQualifiers() {
    std::vector<QualifierSyntax> qualifiers;
    if (!m_tokens.take('[')) return qualifiers;
    do {
      qualifiers.push_back(parseQualifier());
    } while (m_tokens.take(','));
    m_tokens.expect(']', "after the qualifiers");
    return qualifiers;
  }

  QualifierSyntax parseQualifier() {
    QualifierSyntax qualifier;
    qualifier.at = m_tokens.peek().at;
    qualifier.name = m_tokens.expectName("the name of a qualifier");
    if (m_tokens.take('(')) {
      qualifier.value = parseInitializer(0);
      m_tokens.expect(')', "after the qualifier's value");
    } else if (m_tokens.peek().is('{')) {
      qualifier.value = parseInitializer(0);
    }
    if (m_tokens.take(':')) {
      do {
        parseFlavor(qualifier.flavors);
      } while (m_tokens.peek().kind == TokenKind::eWord);
    }
    return qualifier;
  }

  ClassSyntax parseClass(std::vector<QualifierSyntax> qualifiers) {
    ClassSyntax parsed;
    parsed.qualifiers = std::move(qualifiers);
    m_tokens.next();
    parsed.at = m_tokens.peek().at;
    parsed.name = m_tokens.expectName("the name of the class");
    if (m_tokens.takeWord("as")) parseAlias();
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
    property.qualifiers = parseQualifiers();
    if (m_tokens.startsDeclaration()) m_tokens.fail(kExpected);
    property.type = parseType(kExpected);
    property.at = m_tokens.peek().at;
    property.name = m_tokens.expectName("the name of the property or method");
    if (m_tokens.take('(')) {
      parsed.methods.push_back(parseMethod(std::move(property)));
      return;
    }
    property.type.isArray = parseArrayMark() || property.type.isArray;
    if (m_tokens.take('=')) property.initial = parseInitializer(0);
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
    parameter.qualifiers = parseQualifiers();
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

  std::string parseAlias() {
    if (m_tokens.peek().kind != TokenKind::eAlias) m_tokens.fail("an alias");
    return std::string(m_tokens.next().text);
  }

  InstanceSyntax parseInstanceBody(int depth) {
    if (depth > kDeepestNesting) m_tokens.fail("at most 32 instances inside each other");
    InstanceSyntax instance;
    instance.nameSpace = m_nameSpace;
    m_tokens.expectWord("instance");
    m_tokens.expectWord("of");
    instance.at = m_tokens.peek().at;
    instance.className = m_tokens.expectName("the class of the instance");
    if (m_tokens.takeWord("as")) instance.alias = parseAlias();
    m_tokens.expect('{', "before the values of the instance");
    while (!m_tokens.take('}')) instance.assignments.push_back(parseAssignment(depth));
    return instance;
  }

  AssignmentSyntax parseAssignment(int depth) {
    AssignmentSyntax assignment;
    parseQualifiers();
    assignment.at = m_tokens.peek().at;
    assignment.name = m_tokens.expectName("the name of a property or \"}\"");
    m_tokens.expect('=', "after the property's name");
    assignment.value = parseInitializer(depth);
    m_tokens.expect(';', "after the value");
    return assignment;
  }

  Initializer parseInitializer(int depth) {
    Initializer initializer;
    initializer.at = m_tokens.peek().at;
    if (!m_tokens.take('{')) {
      initializer.elements.push_back(parseLiteral(depth));
      return initializer;
    }
    initializer.isArray = true;
    if (m_tokens.take('}')) return initializer;
    do {
      initializer.elements.push_back(parseLiteral(depth));
    } while (m_tokens.take(','));
    m_tokens.expect('}', "after the values");
    return initializer;
  }

  Literal parseLiteral(int depth) {
    Literal literal;
    literal.at = m_tokens.peek().at;
    switch (m_tokens.peek().kind) {
      case TokenKind::eString:
        literal.kind = LiteralKind::eString;
        literal.text = parseStringPieces();
        break;
      case TokenKind::eInteger:
      case TokenKind::eReal:
        parseNumber(literal);
        break;
      case TokenKind::eCharacter:
        literal.kind = LiteralKind::eCharacter;
        if (!readCharacter(m_tokens.peek().text, literal.magnitude)) {
          m_tokens.fail("one character between the apostrophes");
        }
        m_tokens.next();
        break;
      case TokenKind::eAlias:
        literal.kind = LiteralKind::eAlias;
        literal.text = parseAlias();
        break;
      default:
        parseWordLiteral(literal, depth);
    }
    return literal;
  }

  void parseWordLiteral(Literal& literal, int depth) {
    if (m_tokens.takeWord("null")) {
      literal.kind = LiteralKind::eNull;
    } else if (m_tokens.takeWord("true")) {
      literal.kind = LiteralKind::eBoolean;
      literal.truth = true;
    } else if (m_tokens.takeWord("false")) {
      literal.kind = LiteralKind::eBoolean;
    } else if (m_tokens.peek().isWord("instance")) {
      literal.kind = LiteralKind::eInstance;
      literal.instance = std::make_shared<InstanceSyntax>(parseInstanceBody(depth + 1));
    } else {
      m_tokens.fail("a value");
    }
  }

  void parseNumber(Literal& literal) {
    const Token& token = m_tokens.peek();
    if (token.kind == TokenKind::eReal) {
      literal.kind = LiteralKind::eReal;
      if (!readReal(token.text, literal.real)) m_tokens.fail("a real number");
    } else {
      literal.kind = LiteralKind::eInteger;
      if (!readInteger(token.text, literal.negative, literal.magnitude)) {
        m_tokens.fail("an integer of at most 64 bits");
      }
    }
    m_tokens.next();
  }

  /// Adjacent strings are one.
  std::string parseStringPieces() {
    std::string text;
    while (m_tokens.peek().kind == TokenKind::eString) {
      appendUnescaped(text, m_tokens.next().text);
    }
    return text;
  }

  TokenStream m_tokens;
  CompilationUnit& m_unit;
  std::string m_nameSpace;  ///< of the pragma in force; empty for the default one
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
