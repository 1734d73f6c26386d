#pragma once

#include <cstdint>
#include <vector>

/// The members of the objects in an OCP stream, version 2.0, as tables.
namespace reports {

enum class ValueKind : std::uint8_t {
  kText,
  kNumber,
  kCount,   ///< a whole number from 0
  kFlag,    ///< true or false
  kScalar,  ///< any of a text, a truth and a number
  kObject,  ///< whatever is in it
  kTwo,     ///< the number itself
  kZero,
  kWord,    ///< one of `words`
  kTexts,   ///< a list
  kShape,   ///< an object of `shape`
  kShapes,  ///< a list of such
  kChoice   ///< an object with exactly one of the choices of `shape`
};

using Words = std::vector<const char*>;
struct Shape;

struct Field {
  const char* name;
  ValueKind kind;
  bool isRequired = false;
  const Shape* shape = nullptr;
  const Words* words = nullptr;
  bool isChoice = false;
};

struct Shape {
  std::vector<Field> fields;
  bool isOpen = false;  ///< it may have other members
};

const Shape& ocpLineShape();

}  // namespace reports
