#pragma once

#include <string>

namespace cmpinsp::broker {

/// A provider library. It stays loaded until the process ends: threads that a provider has started
/// may still be in its code when nothing else is.
class Library {
 public:
  Library() = default;
  /// Loads the file `path` (UTF-8), with all its symbols resolved now and visible to nobody else.
  /// Throws `TVORException` (provider failed) with the loader's reason.
  explicit Library(const std::string& path);

  explicit operator bool() const noexcept { return m_handle != nullptr; }

  /// The address of an exported function, or null.
  template <typename Function>
  Function find(const std::string& name) const {
    return reinterpret_cast<Function>(address(name));
  }

 private:
  using AnyFunction = void (*)();
  AnyFunction address(const std::string& name) const;

  void* m_handle = nullptr;
};

}  // namespace cmpinsp::broker
