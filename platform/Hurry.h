#pragma once

#include <algorithm>

namespace diagsrunner::platform {

/// From any thread: ends the sleeps that go on, and shortens those that follow, the first ones
/// most.
void hurry() noexcept;

/// How long a sleep may take since somebody is in a hurry: a little at first, then a quarter more
/// each time. Until then, as long as it is told.
class Hurry {
 public:
  void begin() noexcept {
    m_isOn = true;
    m_next = kFirst;
  }

  unsigned int shorten(unsigned int milliseconds) noexcept {
    if (!m_isOn || milliseconds < m_next) return milliseconds;
    const unsigned int allowed = m_next;
    m_next += m_next / 4;
    return std::min(milliseconds, allowed);
  }

 private:
  static constexpr unsigned int kFirst = 100;
  bool m_isOn = false;
  unsigned int m_next = kFirst;
};

}  // namespace diagsrunner::platform
