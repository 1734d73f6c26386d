#pragma once

#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "providers/common/values/Value.h"

namespace providers {

std::string show(const Value& value);

/// "Name=value" of each property, each in a line; keys have a star.
inline std::string show(const Properties& properties, const std::string& end = "\n") {
  std::string text;
  for (const Property& property : properties.all())
    text += property.name + (property.key ? "*=" : "=") + show(property.value) + end;
  return text;
}

/// Writes a value with its type, so that two are the same where their texts are.
struct Show {
  std::string operator()(std::monostate) const { return "null"; }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(const std::string& text) const { return '"' + text + '"'; }
  std::string operator()(const DateTime& time) const {
    return (time.interval ? "interval " : "time ") + std::to_string(time.microseconds);
  }
  std::string operator()(const PathPtr& path) const {
    return path ? path->className + "." + show(path->keys, ";") : "no path";
  }
  std::string operator()(const InstancePtr& instance) const {
    return instance ? instance->className + "{" + show(instance->properties, ";") + "}"
                    : "no instance";
  }
  template <class T>
  std::string operator()(const std::vector<T>& items) const {
    std::string text;
    for (const T& item : items) text += (text.empty() ? "" : ", ") + (*this)(item);
    return "[" + text + "]";
  }
  template <class T>
  std::enable_if_t<std::is_integral_v<T>, std::string> operator()(T number) const {
    return (std::is_signed_v<T> ? "sint" : "uint") + std::to_string(8 * sizeof number) + " " +
           std::to_string(number);
  }
};

inline std::string show(const Value& value) { return std::visit(Show(), value); }

}  // namespace providers
