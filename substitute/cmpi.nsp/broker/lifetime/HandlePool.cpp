#include <mutex>
#include <new>

#include "substitute/cmpi.nsp/broker/lifetime/Handle.h"
#include "substitute/cmpi.nsp/broker/lifetime/Tables.h"

namespace cmpinsp::broker {
namespace {

constexpr std::size_t kSlabBytes = std::size_t{1} << 16U;
constexpr std::size_t kSlabsAtMost = std::size_t{1} << 16U;
/// How many handles a thread takes at once, and how many it keeps.
constexpr std::size_t kBatch = 256;
constexpr std::size_t kKeptAtMost = 4 * 1024;

struct Slab {
  static constexpr std::size_t kHandles = kSlabBytes / sizeof(Handle) - 1;

  Kind kind;
  alignas(sizeof(Handle)) Handle handles[kHandles];
};
static_assert(sizeof(Slab) == kSlabBytes, "the handles of a slab fill it");

/// The addresses of all slabs: open addressing, insert-only, read without a lock.
class SlabTable {
 public:
  const Slab* find(std::uintptr_t base) const noexcept {
    for (std::size_t slot = slotOf(base);; slot = (slot + 1) % kSlots) {
      const std::uintptr_t entry = m_slots[slot].load(std::memory_order_acquire);
      if (entry == base) return reinterpret_cast<const Slab*>(base);
      if (entry == 0) return nullptr;
    }
  }

  /// The caller sees to it that one thread inserts at a time.
  void insert(const Slab* slab) {
    if (m_count >= kSlabsAtMost) throw std::bad_alloc();
    const auto base = reinterpret_cast<std::uintptr_t>(slab);
    std::size_t slot = slotOf(base);
    while (m_slots[slot].load(std::memory_order_relaxed) != 0) slot = (slot + 1) % kSlots;
    m_slots[slot].store(base, std::memory_order_release);
    ++m_count;
  }

 private:
  static constexpr std::size_t kSlots = 2 * kSlabsAtMost;

  static std::size_t slotOf(std::uintptr_t base) noexcept {
    return (base / kSlabBytes * 0x9E3779B97F4A7C15U >> 32U) % kSlots;
  }

  std::array<std::atomic<std::uintptr_t>, kSlots> m_slots{};
  std::size_t m_count = 0;
};

SlabTable slabTable;
std::mutex poolMutex;

void append(Handle*& first, Handle*& last, Handle& handle) noexcept {
  handle.next = nullptr;
  if (last == nullptr) {
    first = &handle;
  } else {
    last->next = &handle;
  }
  last = &handle;
}

}  // namespace

/// What the threads' caches share. The caller holds `poolMutex`.
class HandlePool {
 public:
  static void move(HandleCache::Queue& from, HandleCache::Queue& to, std::size_t count) noexcept {
    while (count-- > 0 && from.first != nullptr) {
      Handle& handle = *from.first;
      from.first = handle.next;
      if (from.first == nullptr) from.last = nullptr;
      --from.count;
      append(to.first, to.last, handle);
      ++to.count;
    }
  }

  static void grow(Kind kind) {
    void* memory = ::operator new(kSlabBytes, std::align_val_t(kSlabBytes));
    Slab* slab = new (memory) Slab;
    slab->kind = kind;
    HandleCache::Queue& queue = of(kind);
    for (Handle& handle : slab->handles) {
      handle.kind = kind;
      handle.ft = tableOf(kind);
      append(queue.first, queue.last, handle);
      ++queue.count;
    }
    slabTable.insert(slab);
  }

  static HandleCache::Queue& of(Kind kind) noexcept {
    return queues[static_cast<std::size_t>(kind)];
  }

 private:
  static std::array<HandleCache::Queue, kKindCount> queues;
};

std::array<HandleCache::Queue, kKindCount> HandlePool::queues;

Handle* findLive(const void* address) noexcept {
  const auto number = reinterpret_cast<std::uintptr_t>(address);
  const std::uintptr_t base = number & ~(kSlabBytes - 1);
  const std::uintptr_t offset = number - base;
  if (base == 0 || offset < sizeof(Handle) || offset % sizeof(Handle) != 0) return nullptr;
  if (slabTable.find(base) == nullptr) return nullptr;
  auto* handle = const_cast<Handle*>(static_cast<const Handle*>(address));
  return handle->alive.load(std::memory_order_acquire) ? handle : nullptr;
}

Handle& HandleCache::take(Kind kind) {
  Queue& queue = m_free[static_cast<std::size_t>(kind)];
  if (queue.first == nullptr) {
    const std::lock_guard<std::mutex> lock(poolMutex);
    if (HandlePool::of(kind).first == nullptr) HandlePool::grow(kind);
    HandlePool::move(HandlePool::of(kind), queue, kBatch);
  }
  Handle& handle = *queue.first;
  queue.first = handle.next;
  if (queue.first == nullptr) queue.last = nullptr;
  --queue.count;
  return handle;
}

void HandleCache::put(Handle& handle) noexcept {
  Queue& queue = m_free[static_cast<std::size_t>(handle.kind)];
  append(queue.first, queue.last, handle);
  if (++queue.count <= kKeptAtMost) return;
  const std::lock_guard<std::mutex> lock(poolMutex);
  HandlePool::move(queue, HandlePool::of(handle.kind), kKeptAtMost / 2);
}

void HandleCache::flush() noexcept {
  const std::lock_guard<std::mutex> lock(poolMutex);
  for (std::size_t kind = 0; kind < kKindCount; ++kind) {
    HandlePool::move(m_free[kind], HandlePool::of(static_cast<Kind>(kind)), m_free[kind].count);
  }
}

}  // namespace cmpinsp::broker
