#pragma once

#include <string>
#include <utility>
#include <vector>

#include "framework/TCIMValue.h"

namespace cmpinsp {

/// An object path as plain data: what a CMPI object path holds and what a registry is asked for.
struct ObjectPath {
  std::string nameSpace;  ///< "root/cimv2"; may be empty
  std::string className;
  std::vector<std::pair<std::string, NZELVOR20::TCIMValue>> keys;  ///< in the order they were set

  /// The key (name without case), or null.
  const NZELVOR20::TCIMValue* findKey(const std::string& name) const;
  /// Sets or replaces a key.
  void setKey(const std::string& name, NZELVOR20::TCIMValue value);

  /// `root/cimv2:Class.Key="value",...`, keys in name order.
  std::string toText() const;

  /// The same class, namespace and keys; integer keys compare by value, whatever their width.
  bool operator==(const ObjectPath& other) const;

  /// Reads what `toText` writes, and the other forms of DSP0207 untyped WBEM URIs. Throws
  /// `TVORException` (invalid parameter) that names the position.
  static ObjectPath parse(const std::string& text);
};

}  // namespace cmpinsp
