#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/repository/MofSyntax.h"
#include "substitute/cmpi.nsp/repository/TokenStream.h"

namespace cmpinsp {

/// Reads the rules of the grammar that classes and instances share: values, qualifiers with their
/// values, and instances, which are values as well. Each function takes its rule from the stream
/// and throws `SyntaxError` where the rule does not hold.
class MofValueParser {
 public:
  /// Reads from `tokens`; instances get the namespace that `nameSpace` holds when they are read.
  /// Both must outlive the parser.
  MofValueParser(TokenStream& tokens, const std::string& nameSpace) noexcept
      : m_tokens(tokens), m_nameSpace(nameSpace) {}

  /// The qualifiers in brackets; none where no bracket opens.
  std::vector<QualifierSyntax> parseQualifiers();

  /// One flavor. Those that mean nothing here, as some vendors write them, are passed over.
  void parseFlavor(Flavors& flavors);

  /// A value, or values in braces. `depth` counts the instances around it.
  Initializer parseInitializer(int depth = 0);

  /// An instance from the word "instance" to its closing brace. `depth` counts the instances around
  /// it.
  InstanceSyntax parseInstance(int depth = 0);

  /// Adjacent strings, which are one.
  std::string parseStringPieces();

  std::string parseAlias();

 private:
  QualifierSyntax parseQualifier();
  AssignmentSyntax parseAssignment(int depth);
  Literal parseLiteral(int depth);
  void parseWordLiteral(Literal& literal, int depth);
  void parseNumber(Literal& literal);

  TokenStream& m_tokens;
  const std::string& m_nameSpace;
};

}  // namespace cmpinsp
