#include "providers/common/values/Value.h"

#include <algorithm>
#include <cctype>
#include <type_traits>

namespace providers {

namespace {

bool sameLetter(char left, char right) {
  return std::tolower(static_cast<unsigned char>(left)) ==
         std::tolower(static_cast<unsigned char>(right));
}

struct ToNumber {
  template <class T>
  std::optional<std::uint64_t> operator()(const T& value) const {
    if constexpr (std::is_same_v<T, std::int64_t>) {
      if (value < 0) return std::nullopt;
      return static_cast<std::uint64_t>(value);
    } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
      return value;
    } else {
      return std::nullopt;
    }
  }
};

}  // namespace

bool isNull(const Value& value) {
  if (const auto* path = std::get_if<PathPtr>(&value)) return !*path;
  if (const auto* instance = std::get_if<InstancePtr>(&value)) return !*instance;
  return std::holds_alternative<std::monostate>(value);
}

std::optional<std::uint64_t> asNumber(const Value& value) { return std::visit(ToNumber(), value); }

std::optional<bool> asBoolean(const Value& value) {
  if (const bool* boolean = std::get_if<bool>(&value)) return *boolean;
  return std::nullopt;
}

std::optional<std::string> asText(const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return std::nullopt;
}

bool sameValue(const Value& left, const Value& right) {
  if (isNull(left) || isNull(right)) return isNull(left) && isNull(right);
  const auto leftNumber = asNumber(left);
  const auto rightNumber = asNumber(right);
  if (leftNumber || rightNumber) return leftNumber == rightNumber;
  const auto* leftPath = std::get_if<PathPtr>(&left);
  const auto* rightPath = std::get_if<PathPtr>(&right);
  if (leftPath && rightPath) return **leftPath == **rightPath;
  return left == right;
}

bool sameName(const std::string& left, const std::string& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), sameLetter);
}

Properties::Properties(std::initializer_list<Property> properties) : m_properties(properties) {}

Property& Properties::slot(const std::string& name) {
  for (Property& property : m_properties)
    if (sameName(property.name, name)) return property;
  m_properties.push_back({name, {}, false});
  return m_properties.back();
}

void Properties::set(const std::string& name, Value value) { slot(name).value = std::move(value); }

void Properties::setKey(const std::string& name, Value value) {
  Property& property = slot(name);
  property.value = std::move(value);
  property.key = true;
}

void Properties::merge(const Properties& others) {
  for (const Property& property : others.all()) {
    Property& mine = slot(property.name);
    mine.value = property.value;
    mine.key = mine.key || property.key;
  }
}

const Value& Properties::get(const std::string& name) const {
  static const Value kNull;
  for (const Property& property : m_properties)
    if (sameName(property.name, name)) return property.value;
  return kNull;
}

bool operator==(const ObjectPath& left, const ObjectPath& right) {
  const auto& keys = left.keys.all();
  return sameName(left.className, right.className) && keys.size() == right.keys.all().size() &&
         std::all_of(keys.begin(), keys.end(), [&right](const Property& key) {
           return sameValue(key.value, right.keys.get(key.name));
         });
}

ObjectPath Instance::path() const {
  ObjectPath path{className, {}};
  for (const Property& property : properties.all())
    if (property.key) path.keys.setKey(property.name, property.value);
  return path;
}

Value reference(const Instance& instance) {
  return std::make_shared<const ObjectPath>(instance.path());
}

}  // namespace providers
