#include "substitute/cmpi.nsp/broker/lifetime/BodyMemory.h"

#include <mutex>
#include <new>
#include <vector>

#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"

namespace cmpinsp::broker {
namespace {

constexpr std::size_t kChunkBytes = std::size_t{64} * 1024;
/// How many blocks of a size a thread takes at once, and how many it keeps.
constexpr std::size_t kBatch = 256;
constexpr std::size_t kKeptAtMost = 4 * 1024;

/// What the threads share; never destroyed, since threads may outlive everything.
struct Store {
  std::mutex mutex;
  std::array<BlockCache::List, BlockCache::kSizes> free;
  std::vector<void*> chunks;
};

Store& store() {
  static auto* const kept = new Store;
  return *kept;
}

void push(BlockCache::List& list, void* block) noexcept {
  list.first = new (block) BlockCache::Free{list.first};
  ++list.count;
}

void* pop(BlockCache::List& list) noexcept {
  BlockCache::Free* block = list.first;
  list.first = block->next;
  --list.count;
  return block;
}

void move(BlockCache::List& from, BlockCache::List& to, std::size_t count) noexcept {
  while (count-- > 0 && from.first != nullptr) push(to, pop(from));
}

/// Cuts a new chunk into blocks. The caller holds the store's lock.
void grow(BlockCache::List& list, std::size_t blockBytes) {
  Store& shared = store();
  shared.chunks.reserve(shared.chunks.size() + 1);
  char* const chunk = static_cast<char*>(::operator new(kChunkBytes));
  shared.chunks.push_back(chunk);
  for (std::size_t at = 0; at + blockBytes <= kChunkBytes; at += blockBytes) {
    push(list, chunk + at);
  }
}

std::size_t indexOf(std::size_t size) noexcept { return (size - 1) / BlockCache::kStep; }

}  // namespace

void* BlockCache::take(std::size_t size) {
  const std::size_t index = indexOf(size);
  List& list = m_free[index];
  if (list.first == nullptr) {
    Store& shared = store();
    const std::lock_guard<std::mutex> lock(shared.mutex);
    if (shared.free[index].first == nullptr) grow(shared.free[index], (index + 1) * kStep);
    move(shared.free[index], list, kBatch);
  }
  return pop(list);
}

void BlockCache::give(void* block, std::size_t size) noexcept {
  const std::size_t index = indexOf(size);
  push(m_free[index], block);
  if (m_free[index].count <= kKeptAtMost) return;
  Store& shared = store();
  const std::lock_guard<std::mutex> lock(shared.mutex);
  move(m_free[index], shared.free[index], kKeptAtMost / 2);
}

void BlockCache::flush() noexcept {
  Store& shared = store();
  const std::lock_guard<std::mutex> lock(shared.mutex);
  for (std::size_t index = 0; index < kSizes; ++index) {
    move(m_free[index], shared.free[index], m_free[index].count);
  }
}

// The address sanitizer finds mistakes only in memory that is really freed.
#if defined(__SANITIZE_ADDRESS__)
#define CMPI_NSP_PLAIN_MEMORY 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CMPI_NSP_PLAIN_MEMORY 1
#endif
#endif

#if defined(CMPI_NSP_PLAIN_MEMORY)

void* takeBlock(std::size_t size) { return ::operator new(size); }
void giveBlock(void* block, std::size_t) noexcept { ::operator delete(block); }

#else

void* takeBlock(std::size_t size) {
  if (size > BlockCache::kStep * BlockCache::kSizes) return ::operator new(size);
  return threadState().blocks.take(size);
}

void giveBlock(void* block, std::size_t size) noexcept {
  if (size > BlockCache::kStep * BlockCache::kSizes) {
    ::operator delete(block);
  } else {
    threadState().blocks.give(block, size);
  }
}

#endif

}  // namespace cmpinsp::broker
