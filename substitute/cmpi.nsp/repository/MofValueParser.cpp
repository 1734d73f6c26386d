#include "substitute/cmpi.nsp/repository/MofValueParser.h"

#include <memory>
#include <utility>

#include "substitute/cmpi.nsp/repository/MofLiterals.h"

namespace cmpinsp {

namespace {

/// How deep instances may be written inside each other.
constexpr int kDeepestNesting = 32;

}  // namespace

void MofValueParser::parseFlavor(Flavors& flavors) {
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

std::vector<QualifierSyntax> MofValueParser::parseQualifiers() {
  std::vector<QualifierSyntax> qualifiers;
  if (!m_tokens.take('[')) return qualifiers;
  do {
    qualifiers.push_back(parseQualifier());
  } while (m_tokens.take(','));
  m_tokens.expect(']', "after the qualifiers");
  return qualifiers;
}

QualifierSyntax MofValueParser::parseQualifier() {
  QualifierSyntax qualifier;
  qualifier.at = m_tokens.peek().at;
  qualifier.name = m_tokens.expectName("the name of a qualifier");
  if (m_tokens.take('(')) {
    qualifier.value = parseInitializer();
    m_tokens.expect(')', "after the qualifier's value");
  } else if (m_tokens.peek().is('{')) {
    qualifier.value = parseInitializer();
  }
  if (m_tokens.take(':')) {
    do {
      parseFlavor(qualifier.flavors);
    } while (m_tokens.peek().kind == TokenKind::eWord);
  }
  return qualifier;
}

std::string MofValueParser::parseAlias() {
  if (m_tokens.peek().kind != TokenKind::eAlias) m_tokens.fail("an alias");
  return std::string(m_tokens.next().text);
}

InstanceSyntax MofValueParser::parseInstance(int depth) {
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

AssignmentSyntax MofValueParser::parseAssignment(int depth) {
  AssignmentSyntax assignment;
  parseQualifiers();
  assignment.at = m_tokens.peek().at;
  assignment.name = m_tokens.expectName("the name of a property or \"}\"");
  m_tokens.expect('=', "after the property's name");
  assignment.value = parseInitializer(depth);
  m_tokens.expect(';', "after the value");
  return assignment;
}

Initializer MofValueParser::parseInitializer(int depth) {
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

Literal MofValueParser::parseLiteral(int depth) {
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

void MofValueParser::parseWordLiteral(Literal& literal, int depth) {
  if (m_tokens.takeWord("null")) {
    literal.kind = LiteralKind::eNull;
  } else if (m_tokens.takeWord("true")) {
    literal.kind = LiteralKind::eBoolean;
    literal.truth = true;
  } else if (m_tokens.takeWord("false")) {
    literal.kind = LiteralKind::eBoolean;
  } else if (m_tokens.peek().isWord("instance")) {
    literal.kind = LiteralKind::eInstance;
    literal.instance = std::make_shared<InstanceSyntax>(parseInstance(depth + 1));
  } else {
    m_tokens.fail("a value");
  }
}

void MofValueParser::parseNumber(Literal& literal) {
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

std::string MofValueParser::parseStringPieces() {
  std::string text;
  while (m_tokens.peek().kind == TokenKind::eString) {
    appendUnescaped(text, m_tokens.next().text);
  }
  return text;
}

}  // namespace cmpinsp
