#pragma once

#include <atomic>

namespace support {

/// Base of everything scripted that is handed out by handle: counts what is alive, so that a test
/// can tell whether a handle was kept too long.
class LiveObject {
 public:
  /// How many scripted objects are alive in this process. 0 once the world is gone.
  static int count() noexcept { return counter().load(); }

 protected:
  LiveObject() noexcept { ++counter(); }
  LiveObject(const LiveObject&) noexcept { ++counter(); }
  LiveObject& operator=(const LiveObject&) noexcept = default;
  ~LiveObject() { --counter(); }

 private:
  static std::atomic<int>& counter() noexcept {
    static std::atomic<int> alive{0};
    return alive;
  }
};

}  // namespace support
