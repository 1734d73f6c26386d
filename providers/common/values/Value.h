#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace providers {

struct ObjectPath;
struct Instance;

/// A CIM date and time: a point in time in microseconds since 1970-01-01 UTC, or a length.
struct DateTime {
  std::int64_t microseconds = 0;
  bool interval = false;
};
inline bool operator==(const DateTime& left, const DateTime& right) {
  return left.microseconds == right.microseconds && left.interval == right.interval;
}

using PathPtr = std::shared_ptr<const ObjectPath>;
using InstancePtr = std::shared_ptr<const Instance>;

/// A CIM value; the first alternative is the null value. An `ObjectPath` is a reference, an
/// `Instance` an embedded instance.
using Value = std::variant<std::monostate, bool, std::uint8_t, std::uint16_t, std::uint32_t,
                           std::uint64_t, std::int64_t, std::string, DateTime, PathPtr, InstancePtr,
                           std::vector<std::uint16_t>, std::vector<std::uint32_t>,
                           std::vector<std::string>, std::vector<InstancePtr>>;

bool isNull(const Value& value);

/// The number, if it is one that is not negative.
std::optional<std::uint64_t> asNumber(const Value& value);
std::optional<bool> asBoolean(const Value& value);
std::optional<std::string> asText(const Value& value);

/// True for the same content: numbers of any width by their number, references key by key.
bool sameValue(const Value& left, const Value& right);

/// Names of CIM elements are compared without case.
bool sameName(const std::string& left, const std::string& right);

struct Property {
  std::string name;
  Value value;
  bool key = false;
};

/// The properties of an instance, or the parameters of a method.
class Properties {
 public:
  Properties() = default;
  Properties(std::initializer_list<Property> properties);

  /// Adds the property, or gives it another value.
  void set(const std::string& name, Value value);
  void setKey(const std::string& name, Value value);
  void merge(const Properties& others);

  /// The value, null when there is no such property.
  const Value& get(const std::string& name) const;

  const std::vector<Property>& all() const noexcept { return m_properties; }
  bool empty() const noexcept { return m_properties.empty(); }

 private:
  Property& slot(const std::string& name);

  std::vector<Property> m_properties;
};

/// The path of an instance; the namespace is that of the request.
struct ObjectPath {
  std::string className;
  Properties keys;
};
bool operator==(const ObjectPath& left, const ObjectPath& right);

struct Instance {
  std::string className;
  Properties properties;

  /// The path that the key properties make.
  ObjectPath path() const;
};

/// A reference to `instance`.
Value reference(const Instance& instance);

}  // namespace providers
