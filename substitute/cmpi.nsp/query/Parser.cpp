#include <algorithm>
#include <utility>

#include "substitute/cmpi.nsp/query/Lexer.h"
#include "substitute/cmpi.nsp/query/Query.h"
#include "substitute/cmpi.nsp/query/QueryError.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp::query {
namespace {

using vorcore::equalNames;

constexpr const char* kReserved[] = {"select", "from", "where", "and",  "or",   "not",
                                     "like",   "isa",  "is",    "null", "true", "false"};
/// What may follow in the languages' larger forms.
constexpr const char* kLargerClauses[] = {"order", "group", "having",    "first",
                                          "union", "join",  "satisfies", "within"};

struct Comparison {
  const char* symbol;
  Operator op;
  Operator turned;  ///< the same with its sides exchanged
};
constexpr Comparison kComparisons[] = {
    {"=", Operator::kEqual, Operator::kEqual},
    {"<>", Operator::kNotEqual, Operator::kNotEqual},
    {"!=", Operator::kNotEqual, Operator::kNotEqual},
    {"<", Operator::kLess, Operator::kGreater},
    {"<=", Operator::kLessOrEqual, Operator::kGreaterOrEqual},
    {">", Operator::kGreater, Operator::kLess},
    {">=", Operator::kGreaterOrEqual, Operator::kLessOrEqual},
};

template <std::size_t size>
bool isAmong(const char* const (&words)[size], const std::string& word) {
  return std::any_of(std::begin(words), std::end(words),
                     [&](const char* one) { return equalNames(word, one); });
}

/// One side of a comparison as it was written.
struct Side {
  Operand operand;
  bool isObject = false;
  std::size_t position = 1;
};

class Parser {
 public:
  Parser(Language language, const std::string& text) : m_lexer(text) {
    m_query.language = language;
    m_query.text = text;
    advance();
  }

  Query parse() {
    if (m_query.language == Language::kFql) {
      readCondition();
    } else {
      readSelection();
      readSource();
      if (acceptWord("where")) readCondition();
    }
    if (m_token.kind != Token::Kind::kEnd) failAtRest();
    return std::move(m_query);
  }

 private:
  void advance() { m_token = m_lexer.next(); }

  bool isWord(const char* word) const {
    return m_token.kind == Token::Kind::kName && equalNames(m_token.text, word);
  }
  bool isSymbol(const char* symbol) const {
    return m_token.kind == Token::Kind::kSymbol && m_token.text == symbol;
  }
  bool acceptWord(const char* word) {
    if (!isWord(word)) return false;
    advance();
    return true;
  }
  bool acceptSymbol(const char* symbol) {
    if (!isSymbol(symbol)) return false;
    advance();
    return true;
  }

  [[noreturn]] void fail(const std::string& what) const { failAt(m_token.position, what); }
  [[noreturn]] static void refuse(std::size_t position, const std::string& feature) {
    throw QueryError(Refusal::kFeature, "query, position " + std::to_string(position) + ": " +
                                            feature + " not supported");
  }

  /// What stands where the query, or a part of it, should have ended.
  [[noreturn]] void failAtRest() const {
    if (m_token.kind == Token::Kind::kName && isAmong(kLargerClauses, m_token.text)) {
      refuse(m_token.position, "\"" + m_token.text + "\" is");
    }
    for (const char* arithmetic : {"+", "-", "*", "/", "|"}) {
      if (isSymbol(arithmetic)) refuse(m_token.position, "arithmetic is");
    }
    fail(m_isInCondition ? "expected AND, OR or the end" : "expected WHERE or the end");
  }

  std::string readName(const char* what) {
    if (m_token.kind != Token::Kind::kName || isAmong(kReserved, m_token.text)) {
      fail(std::string("expected ") + what);
    }
    std::string name = std::move(m_token.text);
    advance();
    return name;
  }

  // select A, B from C

  struct Selected {
    std::string className;
    std::string property;  ///< empty for all
    std::size_t position;
  };

  void readSelection() {
    for (const char* other : {"associators", "references"}) {
      if (isWord(other)) refuse(m_token.position, "\"" + m_token.text + "\" is");
    }
    if (!acceptWord("select")) fail("expected SELECT");
    for (const char* larger : {"distinct", "first"}) {
      if (isWord(larger)) refuse(m_token.position, "\"" + m_token.text + "\" is");
    }
    do {
      m_selected.push_back(readSelected());
    } while (acceptSymbol(","));
  }

  Selected readSelected() {
    Selected selected{{}, {}, m_token.position};
    if (acceptSymbol("*")) return selected;
    selected.property = readName("\"*\" or a property");
    refuseLargerName(selected.position);
    if (!acceptSymbol(".")) return selected;
    selected.className = std::move(selected.property);
    selected.property.clear();
    if (!acceptSymbol("*")) selected.property = readName("\"*\" or a property");
    refuseLargerName(selected.position);
    return selected;
  }

  void readSource() {
    if (!acceptWord("from")) fail("expected FROM");
    m_query.className = readName("a class name");
    if (isSymbol(":") || isSymbol("/")) refuse(m_token.position, "a namespace is");
    if (m_query.language == Language::kCql) readAlias();
    if (isSymbol(",")) refuse(m_token.position, "a join is");
    m_query.selectsAll = false;
    for (Selected& selected : m_selected) {
      if (!selected.className.empty()) requireSource(selected.className, selected.position);
      if (selected.property.empty()) m_query.selectsAll = true;
      m_query.properties.push_back(std::move(selected.property));
    }
    if (m_query.selectsAll) m_query.properties.clear();
  }

  void readAlias() {
    if (acceptWord("as")) {
      m_alias = readName("a name for the class");
    } else if (m_token.kind == Token::Kind::kName && !isWord("where") &&
               !isAmong(kLargerClauses, m_token.text)) {
      m_alias = readName("WHERE or the end");
    }
  }

  bool isSource(const std::string& name) const {
    if (name.empty() || m_query.className.empty()) return false;
    return equalNames(name, m_query.className) || (!m_alias.empty() && equalNames(name, m_alias));
  }

  void requireSource(const std::string& name, std::size_t position) const {
    if (isSource(name)) return;
    if (m_query.className.empty()) refuse(position, "a property of a property is");
    refuse(position, "\"" + name + "\" is not what the query selects from; a property of a " +
                         "property, or of another class, is");
  }

  /// Behind a name: a call, an element of an array and the like.
  void refuseLargerName(std::size_t position) const {
    if (isSymbol("(")) refuse(position, "a function is");
    if (isSymbol("[")) refuse(position, "an element of an array is");
    if (isSymbol("::")) refuse(position, "the scope of a property is");
    if (isSymbol("#")) refuse(position, "a symbolic constant is");
  }

  // Conditions, from what binds least.

  void readCondition() {
    m_isInCondition = true;
    m_query.condition = readOr();
  }

  Node readOr() {
    return readChain(Node::Kind::kOr, "or", [this] { return readAnd(); });
  }
  Node readAnd() {
    return readChain(Node::Kind::kAnd, "and", [this] { return readNot(); });
  }

  template <typename Read>
  Node readChain(Node::Kind kind, const char* word, Read readChild) {
    Node first = readChild();
    if (!isWord(word)) return first;
    Node chain;
    chain.kind = kind;
    chain.children.push_back(std::move(first));
    while (acceptWord(word)) chain.children.push_back(readChild());
    return chain;
  }

  Node readNot() {
    if (!isWord("not")) return readPrimary();
    deepen();
    advance();
    Node negation;
    negation.kind = Node::Kind::kNot;
    negation.children.push_back(readNot());
    --m_depth;
    return negation;
  }

  Node readPrimary() {
    if (!isSymbol("(")) return readPredicate();
    deepen();
    advance();
    Node inner = readOr();
    if (!isSymbol(")")) {
      if (m_token.kind == Token::Kind::kEnd) fail("expected ')'");
      failAtRest();
    }
    advance();
    --m_depth;
    return inner;
  }

  void deepen() {
    if (++m_depth > kDeepestNesting) fail("the condition is nested too deeply");
  }

  Node readPredicate() {
    Predicate predicate;
    const Side left = readSide();
    if (acceptWord("is")) {
      predicate.op = acceptWord("not") ? Operator::kNotNull : Operator::kNull;
      if (!acceptWord("null")) fail("expected NULL");
      setLeft(predicate, left);
    } else if (acceptWord("isa")) {
      predicate.op = Operator::kIsA;
      setLeft(predicate, left);
      predicate.right = readClassName();
    } else if (isWord("not") || isWord("like")) {
      readLike(predicate, left);
    } else {
      readComparison(predicate, left);
    }
    if (predicate.isOfObject && predicate.op != Operator::kIsA) {
      failAt(left.position, "\"" + predicate.property + "\" is no property");
    }
    Node node;
    node.predicate = std::make_shared<const Predicate>(std::move(predicate));
    return node;
  }

  static void setLeft(Predicate& predicate, const Side& left) {
    if (left.operand.kind == Operand::Kind::kLiteral) {
      failAt(left.position, "expected a property");
    }
    predicate.property = left.operand.text;
    predicate.isOfObject = left.isObject;
  }

  Operand readClassName() {
    Operand operand;
    operand.kind = Operand::Kind::kClassName;
    if (m_token.kind == Token::Kind::kText) {
      operand.text = std::move(m_token.text);
      advance();
    } else {
      operand.text = readName("a class name");
    }
    return operand;
  }

  void readLike(Predicate& predicate, const Side& left) {
    if (m_query.language == Language::kFql) refuse(m_token.position, "LIKE is");
    predicate.op = acceptWord("not") ? Operator::kNotLike : Operator::kLike;
    if (!acceptWord("like")) fail("expected LIKE");
    setLeft(predicate, left);
    const Side right = readSide();
    refuseObject(right);
    predicate.right = right.operand;
    if (right.operand.kind != Operand::Kind::kLiteral) return;
    if (right.operand.value.GetType() != NZELVOR20::ECIMType::eString) {
      failAt(right.position, "expected a pattern in quotes");
    }
    try {
      predicate.pattern =
          std::make_shared<const LikePattern>(LikePattern::parse(right.operand.text));
    } catch (const QueryError& error) {
      failAt(right.position, error.detail());
    }
  }

  void readComparison(Predicate& predicate, const Side& left) {
    const auto* const found =
        std::find_if(std::begin(kComparisons), std::end(kComparisons),
                     [&](const Comparison& one) { return isSymbol(one.symbol); });
    if (found == std::end(kComparisons)) failWithoutOperator();
    advance();
    if (isWord("null")) fail("nothing equals NULL; IS NULL and IS NOT NULL ask for it");
    const Side right = readSide();
    if (left.operand.kind != Operand::Kind::kLiteral) {
      refuseObject(right);
      predicate.op = found->op;
      setLeft(predicate, left);
      predicate.right = right.operand;
    } else {
      predicate.op = found->turned;
      setLeft(predicate, right);
      predicate.right = left.operand;
    }
  }

  [[noreturn]] void failWithoutOperator() const {
    for (const char* arithmetic : {"+", "-", "*", "/", "|"}) {
      if (isSymbol(arithmetic)) refuse(m_token.position, "arithmetic is");
    }
    fail("expected a comparison");
  }

  static void refuseObject(const Side& side) {
    if (side.isObject) failAt(side.position, "\"" + side.operand.text + "\" is no property");
  }

  Side readSide() {
    Side side;
    side.position = m_token.position;
    if (isSymbol("#")) refuse(side.position, "a symbolic constant is");
    const bool isTrue = isWord("true");
    if (isTrue || isWord("false")) {
      side.operand.value = NZELVOR20::TCIMValue::Boolean(isTrue);
    } else if (m_token.kind == Token::Kind::kText || m_token.kind == Token::Kind::kNumber) {
      side.operand.value = m_token.value;
    } else {
      return readProperty(side);
    }
    side.operand.kind = Operand::Kind::kLiteral;
    side.operand.text = std::move(m_token.text);
    advance();
    return side;
  }

  Side readProperty(Side side) {
    side.operand.kind = Operand::Kind::kProperty;
    side.operand.text = readName("a property or a value");
    refuseLargerName(side.position);
    if (acceptSymbol(".")) {
      requireSource(side.operand.text, side.position);
      side.operand.text = readName("a property");
      refuseLargerName(side.position);
      if (isSymbol(".")) refuse(side.position, "a property of a property is");
    } else {
      side.isObject =
          equalNames(side.operand.text, "__THIS") || (isWord("isa") && isSource(side.operand.text));
    }
    return side;
  }

  Lexer m_lexer;
  Token m_token;
  Query m_query;
  std::string m_alias;
  std::vector<Selected> m_selected;
  bool m_isInCondition = false;
  unsigned m_depth = 0;
};

}  // namespace

Query parseQuery(Language language, const std::string& text) {
  return Parser(language, text).parse();
}

}  // namespace cmpinsp::query
