#pragma once

#include <atomic>

/// A flag that one thread raises and another polls. What was written before the flag was raised is
/// visible to whoever sees it raised; copying takes the value of the moment.
class SharedFlag {
 public:
  SharedFlag() noexcept = default;
  SharedFlag(const SharedFlag& other) noexcept : m_value(other.isSet()) {}
  SharedFlag& operator=(const SharedFlag& other) noexcept {
    set(other.isSet());
    return *this;
  }
  ~SharedFlag() = default;

  bool isSet() const noexcept { return m_value.load(std::memory_order_acquire); }
  void set(bool value) noexcept { m_value.store(value, std::memory_order_release); }

 private:
  std::atomic<bool> m_value{false};
};
