#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "substitute/cmpi.nsp/broker/lifetime/BodyMemory.h"

/// The objects that providers hold. What a provider has is the address of a `Handle`. Handles lie
/// in slabs that are never given back, each slab for one kind, so that any address can be checked
/// without touching memory that is not ours, and a stale handle still leads to a valid function
/// table of its kind.
namespace cmpinsp::broker {

class Broker;
class Scope;

enum class Kind : std::uint8_t {
  kContext,
  kResult,
  kString,
  kArray,
  kEnumeration,
  kInstance,
  kObjectPath,
  kArgs,
  kDateTime,
  kError,
  kPropertyList,
  kSelectExp,
  kSelectCond,
  kSubCond,
  kPredicate,
  kEnumerationFilter,
  kMutex,
  kCondition,
  kThread
};
constexpr std::size_t kKindCount = 19;

/// The type's name for messages and for `getType` ("CMPIInstance").
const char* nameOf(Kind kind) noexcept;

/// Who ends an object's life.
enum class Ownership : std::uint8_t {
  kScoped,    ///< its scope, or the provider early
  kBorrowed,  ///< its scope alone: the broker handed it to the provider
  kChild,     ///< the object that it was obtained from
  kCloned     ///< the provider
};

struct Handle;

/// What an object is about, behind its handle.
struct Body {
  Body() = default;
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;
  virtual ~Body() = default;

  /// What the object's `hdl` is, which providers only test for null, but for a string's text.
  virtual void* shownTo(Handle& handle) noexcept { return &handle; }

  static void* operator new(std::size_t size) { return takeBlock(size); }
  static void operator delete(void* body, std::size_t size) noexcept { giveBlock(body, size); }

  Handle* children = nullptr;  ///< linked by `Handle::next`; guarded by the children's lock
};

struct Handle {
  void* hdl = nullptr;       ///< never null while the object lives; a string's text
  const void* ft = nullptr;  ///< the kind's function table; never changes
  std::atomic<bool> alive{false};
  Kind kind = Kind::kString;
  Ownership ownership = Ownership::kScoped;
  Broker* broker = nullptr;
  Scope* scope = nullptr;  ///< null for clones and children
  Handle* previous = nullptr;
  Handle* next = nullptr;
  Body* body = nullptr;
};
static_assert(sizeof(Handle) == 64, "a handle fills one cache line");
static_assert(offsetof(Handle, hdl) == 0 && offsetof(Handle, ft) == 8,
              "a handle starts with the two pointers that providers read");

/// The live object at `address`, or null. Any address may be asked about.
Handle* findLive(const void* address) noexcept;

/// Free handles of each kind, oldest first, so that a released handle is told for as long as
/// possible. One a thread; not shared.
class HandleCache {
 public:
  HandleCache() = default;
  HandleCache(const HandleCache&) = delete;
  HandleCache& operator=(const HandleCache&) = delete;
  ~HandleCache() { flush(); }

  /// A free handle. Throws `std::bad_alloc`.
  Handle& take(Kind kind);
  void put(Handle& handle) noexcept;
  /// Gives every handle back to the process.
  void flush() noexcept;

 private:
  struct Queue {
    Handle* first = nullptr;
    Handle* last = nullptr;
    std::size_t count = 0;
  };
  friend class HandlePool;

  std::array<Queue, kKindCount> m_free;
};

}  // namespace cmpinsp::broker
