#include "reports/verify/OcpSchema.h"

#include <cmath>
#include <cstdint>

#include "reports/common/Excerpt.h"
#include "reports/verify/OcpShapes.h"

namespace reports {
namespace {

using Json = nlohmann::json;

/// In JSON Schema, 2.0 is an integer.
bool isCount(const Json& value) {
  if (value.is_number_integer())
    return value.is_number_unsigned() || value.get<std::int64_t>() >= 0;
  if (!value.is_number_float()) return false;
  const double number = value.get<double>();
  return number >= 0 && std::floor(number) == number;
}

bool isNumber(const Json& value, double number) {
  return value.is_number() && value.get<double>() == number;
}

bool isWord(const Json& value, const Words& words) {
  if (!value.is_string()) return false;
  for (const char* const word : words) {
    if (value.get_ref<const std::string&>() == word) return true;
  }
  return false;
}

std::string listed(const Words& words) {
  std::string text;
  for (const char* const word : words) text += (text.empty() ? "" : ", ") + std::string(word);
  return text;
}

class Check {
 public:
  explicit Check(const TellRule& tell) : m_tell(tell) {}

  void shape(const Json& value, const Shape& shape, const std::string& path) const {
    if (!value.is_object()) return m_tell(Rule::kObject, path + " is no object");
    members(value, shape, path);
  }

  /// One with exactly one of its choices; nothing but an object is.
  void choice(const Json& value, const Shape& shape, const std::string& path) const {
    if (!value.is_object()) return m_tell(Rule::kSchema, path + " is no object");
    members(value, shape, path);
    std::size_t count = 0;
    for (const Field& field : shape.fields) {
      if (field.isChoice && value.contains(field.name)) ++count;
    }
    if (count == 1) return;
    const std::string says = count == 0 ? " has none of its artifacts" : " has several artifacts";
    m_tell(Rule::kSchema, (path.empty() ? "the line" : path) + says);
  }

 private:
  void members(const Json& value, const Shape& shape, const std::string& path) const {
    for (const Field& field : shape.fields) {
      const auto found = value.find(field.name);
      const std::string where = path.empty() ? field.name : path + "." + field.name;
      if (found != value.end()) {
        one(*found, field, where);
      } else if (field.isRequired) {
        m_tell(Rule::kSchema, where + " is missing");
      }
    }
    if (!shape.isOpen) unknownMembers(value, shape, path);
  }

  void unknownMembers(const Json& value, const Shape& shape, const std::string& path) const {
    for (const auto& member : value.items()) {
      bool known = false;
      for (const Field& field : shape.fields) known = known || member.key() == field.name;
      if (known) continue;
      const std::string where = path.empty() ? "the line" : path;
      m_tell(Rule::kSchema, where + " has the unknown member \"" + excerpt(member.key()) + "\"");
    }
  }

  void require(bool isRight, const std::string& path, const std::string& what) const {
    if (!isRight) m_tell(Rule::kSchema, path + " is " + what);
  }

  void one(const Json& value, const Field& field, const std::string& path) const {
    switch (field.kind) {
      case ValueKind::kText:
        return require(value.is_string(), path, "no text");
      case ValueKind::kNumber:
        return require(value.is_number(), path, "no number");
      case ValueKind::kCount:
        return require(isCount(value), path, "no whole number from 0");
      case ValueKind::kFlag:
        return require(value.is_boolean(), path, "neither true nor false");
      case ValueKind::kScalar:
        return require(value.is_string() || value.is_boolean() || value.is_number(), path,
                       "neither a text nor a truth nor a number");
      case ValueKind::kObject:
        return require(value.is_object(), path, "no object");
      case ValueKind::kTwo:
        return require(isNumber(value, 2), path, "not 2");
      case ValueKind::kZero:
        return require(isNumber(value, 0), path, "not 0");
      case ValueKind::kWord:
        return require(isWord(value, *field.words), path, "none of " + listed(*field.words));
      case ValueKind::kShape:
        return shape(value, *field.shape, path);
      case ValueKind::kChoice:
        return choice(value, *field.shape, path);
      case ValueKind::kTexts:
      case ValueKind::kShapes:
        return list(value, field, path);
    }
  }

  void list(const Json& value, const Field& field, const std::string& path) const {
    require(value.is_array(), path, "no list");
    if (!value.is_array()) return;
    std::size_t index = 0;
    for (const Json& element : value) {
      const std::string where = path + "[" + std::to_string(index++) + "]";
      if (field.kind == ValueKind::kTexts) {
        require(element.is_string(), where, "no text");
      } else {
        shape(element, *field.shape, where);
      }
    }
  }

  const TellRule& m_tell;
};

}  // namespace

void checkOcpSchema(const Json& line, const TellRule& tell) {
  if (!line.is_object()) return tell(Rule::kSchema, "the line is no object");
  Check(tell).choice(line, ocpLineShape(), "");
}

}  // namespace reports
