#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace providers::memory {

/// Words that begin at a page.
class TestWords {
 public:
  explicit TestWords(std::size_t count) : m_count(count) {
    m_words.reset(new (std::align_val_t(kAlignment)) std::uint64_t[count]());
  }
  std::uint64_t* get() const { return m_words.get(); }
  std::size_t count() const { return m_count; }
  std::uint64_t& operator[](std::size_t index) const { return m_words[index]; }

 private:
  static constexpr std::size_t kAlignment = 4096;
  struct Free {
    void operator()(std::uint64_t* block) const {
      ::operator delete[](block, std::align_val_t(kAlignment));
    }
  };
  std::size_t m_count;
  std::unique_ptr<std::uint64_t[], Free> m_words;
};

}  // namespace providers::memory
