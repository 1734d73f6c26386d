#include "substitute/cmpi.nsp/broker/lifetime/MemoryAccount.h"

#include <cstdlib>
#include <new>
#include <utility>

#include "substitute/cmpi.nsp/broker/lifetime/Failure.h"

namespace cmpinsp::broker {

namespace {

/// More bytes than any provider has a use for: a size that was computed wrongly.
constexpr std::size_t kBytesAtMost = std::size_t{1} << 38U;

}  // namespace

MemoryAccount& MemoryAccount::common() {
  static auto* const account = new MemoryAccount;
  return *account;
}

void* MemoryAccount::allocate(std::size_t size) { return reallocate(nullptr, size); }

void* MemoryAccount::reallocate(void* memory, std::size_t size) {
  if (size > kBytesAtMost) throw std::bad_alloc();
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (memory != nullptr && m_blocks.count(memory) == 0) {
    throw Failure(CMPI_RC_ERR_INVALID_HANDLE, "this memory was not given out by the broker");
  }
  m_blocks.reserve(m_blocks.size() + 1);
  auto node = memory == nullptr ? std::unordered_set<void*>::node_type() : m_blocks.extract(memory);
  void* const moved = std::realloc(memory, size == 0 ? 1 : size);
  if (moved == nullptr) {
    if (!node.empty()) m_blocks.insert(std::move(node));
    throw std::bad_alloc();
  }
  if (node.empty()) {
    m_blocks.insert(moved);
  } else {
    node.value() = moved;
    m_blocks.insert(std::move(node));
  }
  return moved;
}

bool MemoryAccount::releaseOwn(void* memory) noexcept {
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_blocks.erase(memory) == 0) return false;
  std::free(memory);
  return true;
}

void MemoryAccount::release(void* memory) noexcept {
  if (!releaseOwn(memory) && this != &common()) common().releaseOwn(memory);
}

void MemoryAccount::releaseAll() noexcept {
  const std::lock_guard<std::mutex> lock(m_mutex);
  for (void* memory : m_blocks) std::free(memory);
  m_blocks.clear();
}

}  // namespace cmpinsp::broker
