#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "framework/ECIMType.h"
#include "substitute/cmpi.nsp/repository/MofLexer.h"

/// What MOF text says, before any class is looked up: the result of the parser.
namespace cmpinsp {

struct InstanceSyntax;

enum class LiteralKind : unsigned char {
  eNull,
  eBoolean,
  eInteger,
  eReal,
  eString,
  eCharacter,
  eAlias,
  eInstance
};

struct Literal {
  LiteralKind kind = LiteralKind::eNull;
  bool negative = false;        ///< of an integer
  bool truth = false;           ///< of a boolean
  std::uint64_t magnitude = 0;  ///< of an integer; the code of a character
  double real = 0;
  std::string text;  ///< of a string, UTF-8; the name of an alias
  std::shared_ptr<InstanceSyntax> instance;
  Position at;
};

/// One literal, or any number of them between braces.
struct Initializer {
  bool isArray = false;
  std::vector<Literal> elements;
  Position at;
};

/// A flavor that was written, or that was left to the qualifier's declaration.
enum class Choice : unsigned char { eOpen, eNo, eYes };

struct Flavors {
  Choice toSubclass = Choice::eOpen;
  Choice overridable = Choice::eOpen;
  Choice translatable = Choice::eOpen;
};

struct QualifierSyntax {
  std::string name;
  std::optional<Initializer> value;
  Flavors flavors;
  Position at;
};

struct TypeSyntax {
  NZELVOR20::ECIMType type = NZELVOR20::ECIMType::eString;
  bool isArray = false;
  std::string referenceClass;
};

struct PropertySyntax {
  std::vector<QualifierSyntax> qualifiers;
  TypeSyntax type;
  std::string name;
  std::optional<Initializer> initial;
  Position at;
};

struct ParameterSyntax {
  std::vector<QualifierSyntax> qualifiers;
  TypeSyntax type;
  std::string name;
  Position at;
};

struct MethodSyntax {
  std::vector<QualifierSyntax> qualifiers;
  TypeSyntax returnType;
  std::string name;
  std::vector<ParameterSyntax> parameters;
  Position at;
};

struct ClassSyntax {
  std::vector<QualifierSyntax> qualifiers;
  std::string name;
  std::string superclass;
  std::vector<PropertySyntax> properties;
  std::vector<MethodSyntax> methods;
  Position at;  ///< of the name
  /// Equal for definitions that differ in nothing but blanks, comments and the case of names.
  std::uint64_t fingerprint = 0;
};

struct QualifierTypeSyntax {
  std::string name;
  TypeSyntax type;
  std::optional<Initializer> initial;
  Flavors flavors;
  Position at;
};

struct AssignmentSyntax {
  std::string name;
  Initializer value;
  Position at;
};

struct InstanceSyntax {
  std::string className;
  std::string alias;      ///< without its "$"; may be empty
  std::string nameSpace;  ///< of the pragma in force; empty for the default one
  std::vector<AssignmentSyntax> assignments;
  Position at;

  /// The assignment to `name` (case-insensitive), or null.
  const AssignmentSyntax* find(const std::string& name) const;
};

struct IncludeSyntax {
  std::string path;       ///< as written, with "/" for "\"
  std::string nameSpace;  ///< in which the file starts; empty for the default one
  Position at;
};

/// Where a file lies, which decides between two definitions of a class.
enum class Layer : unsigned char {
  ePackage,   ///< not in the schema folder
  eSchema,    ///< in the schema folder itself, as the subset that is shipped
  eOwnFolder  ///< below it: a schema in a folder of its own
};

/// Everything that one file says, without what it includes.
struct CompilationUnit {
  std::string file;
  Layer layer = Layer::ePackage;
  /// The file that was asked for: this one, or the one that includes it.
  std::string askedFor;
  /// Files with the same number share their aliases: one and what it includes. 0 shares with none.
  std::uint32_t aliasScope = 0;
  std::vector<IncludeSyntax> includes;
  std::vector<QualifierTypeSyntax> qualifierTypes;
  std::vector<ClassSyntax> classes;
  std::vector<InstanceSyntax> instances;
};

}  // namespace cmpinsp
