#pragma once

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "framework/Export.h"

namespace vorcore {

/// Where names stand in a list: a hash table over the names from one position on, above the table
/// of the list that this one grew out of. It holds no names itself.
class VORCORE_API NameTable {
 public:
  /// For a list that has `first` names, which `below` (may be empty) knows.
  NameTable(boost::shared_ptr<const NameTable> below, std::size_t first) noexcept
      : m_below(std::move(below)), m_first(first) {}

  /// How many names of the list it knows, with those below it.
  std::size_t end() const noexcept { return m_first + m_count; }
  /// How many tables lie below it.
  std::size_t depth() const noexcept { return m_below ? m_below->depth() + 1 : 0; }

  /// Adds the name at `end()`; `nameAt(position)` is the name at any position of the list.
  template <typename NameAt>
  void add(const NameAt& nameAt) {
    if (2 * (m_count + 1) > m_slots.size()) grow(nameAt);
    put(hashOf(nameAt(end())), end());
    ++m_count;
  }

  /// The first position at which `name` stands, or `end()`.
  template <typename NameAt>
  std::size_t find(const std::string& name, const NameAt& nameAt) const {
    return find(name, hashOf(name), nameAt);
  }

 private:
  static std::size_t hashOf(const std::string& name) noexcept;
  static bool isSame(const std::string& left, const std::string& right) noexcept;

  template <typename NameAt>
  std::size_t find(const std::string& name, std::size_t hash, const NameAt& nameAt) const {
    const std::size_t known = m_below ? m_below->find(name, hash, nameAt) : 0;
    if (known < m_first) return known;
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t slot = hash & mask; !m_slots.empty() && m_slots[slot] != 0;
         slot = (slot + 1) & mask) {
      if (isSame(nameAt(m_slots[slot] - 1), name)) return m_slots[slot] - 1;
    }
    return end();
  }

  template <typename NameAt>
  void grow(const NameAt& nameAt) {
    constexpr std::size_t kFewest = 16;
    m_slots.assign(m_slots.empty() ? kFewest : 2 * m_slots.size(), 0);
    for (std::size_t at = m_first; at < end(); ++at) put(hashOf(nameAt(at)), at);
  }

  void put(std::size_t hash, std::size_t position) noexcept;

  boost::shared_ptr<const NameTable> m_below;
  std::size_t m_first;
  std::size_t m_count = 0;
  std::vector<std::uint32_t> m_slots;  ///< positions + 1; 0 is free
};

/// A list of declarations that are found by their name, without case. A copy shares what it has in
/// common with the list it was copied from, so that a class costs what it says itself and not what
/// it inherits. Reading is safe from any thread as long as nobody writes to the same list.
template <typename Item>
class NamedList {
 public:
  using ItemPtr = boost::shared_ptr<const Item>;
  /// A part of the list, which lists with the same beginning have in common.
  using Chunk = std::vector<ItemPtr>;
  using ChunkPtr = boost::shared_ptr<Chunk>;

  class const_iterator {
   public:
    using iterator_category = std::random_access_iterator_tag;
    using value_type = Item;
    using difference_type = std::ptrdiff_t;
    using pointer = const Item*;
    using reference = const Item&;

    const_iterator() noexcept = default;
    const_iterator(const NamedList& list, std::size_t at) noexcept : m_list(&list), m_at(at) {}
    reference operator*() const { return (*m_list)[m_at]; }
    pointer operator->() const { return &(*m_list)[m_at]; }
    reference operator[](difference_type by) const { return *(*this + by); }
    const_iterator& operator++() noexcept { return *this += 1; }
    const_iterator& operator--() noexcept { return *this += -1; }
    const_iterator operator++(int) noexcept { return std::exchange(*this, *this + 1); }
    const_iterator operator--(int) noexcept { return std::exchange(*this, *this + -1); }
    const_iterator& operator+=(difference_type by) noexcept {
      m_at = static_cast<std::size_t>(static_cast<difference_type>(m_at) + by);
      return *this;
    }
    const_iterator& operator-=(difference_type by) noexcept { return *this += -by; }
    const_iterator operator+(difference_type by) const noexcept {
      return const_iterator(*this) += by;
    }
    const_iterator operator-(difference_type by) const noexcept { return *this + -by; }
    difference_type operator-(const const_iterator& other) const noexcept {
      return static_cast<difference_type>(m_at) - static_cast<difference_type>(other.m_at);
    }
    bool operator==(const const_iterator& other) const noexcept { return m_at == other.m_at; }
    bool operator!=(const const_iterator& other) const noexcept { return m_at != other.m_at; }
    bool operator<(const const_iterator& other) const noexcept { return m_at < other.m_at; }

   private:
    const NamedList* m_list = nullptr;
    std::size_t m_at = 0;
  };
  using iterator = const_iterator;
  using value_type = Item;

  NamedList() = default;
  NamedList(std::initializer_list<Item> items) {
    for (const Item& item : items) push_back(item);
  }

  std::size_t size() const noexcept { return m_size; }
  bool empty() const noexcept { return m_size == 0; }
  const Item& operator[](std::size_t at) const { return *(*m_chunks[at / kChunk])[at % kChunk]; }
  const Item& at(std::size_t position) const {
    if (position >= m_size) throw std::out_of_range("a position behind the end of the list");
    return (*this)[position];
  }
  const Item& front() const { return (*this)[0]; }
  const Item& back() const { return (*this)[m_size - 1]; }
  const_iterator begin() const noexcept { return const_iterator(*this, 0); }
  const_iterator end() const noexcept { return const_iterator(*this, m_size); }
  const std::vector<ChunkPtr>& chunks() const noexcept { return m_chunks; }

  /// The first position at which `name` stands, or `size()`.
  std::size_t find(const std::string& name) const {
    return m_names ? m_names->find(name, nameAt()) : 0;
  }

  void push_back(Item item) { push_back(boost::make_shared<const Item>(std::move(item))); }
  void push_back(ItemPtr item) {
    if (m_size % kChunk == 0) m_chunks.push_back(boost::make_shared<Chunk>());
    ownChunk(m_size).push_back(std::move(item));
    ++m_size;
    ownNames().add(nameAt());
  }

  /// An item to change; its name stays as it is, but for case.
  Item& change(std::size_t position) {
    const boost::shared_ptr<Item> copy = boost::make_shared<Item>((*this)[position]);
    ownChunk(position)[position % kChunk] = copy;
    return *copy;
  }

  /// Puts another item of the same name in the place of one.
  void replace(std::size_t position, Item item) {
    ownChunk(position)[position % kChunk] = boost::make_shared<const Item>(std::move(item));
  }

 private:
  static constexpr std::size_t kChunk = 32;
  /// Tables above each other are asked one after the other.
  static constexpr std::size_t kDeepest = 4;

  auto nameAt() const noexcept {
    return [this](std::size_t at) -> const std::string& { return (*this)[at].name; };
  }

  Chunk& ownChunk(std::size_t position) {
    ChunkPtr& chunk = m_chunks[position / kChunk];
    if (chunk.use_count() > 1) chunk = boost::make_shared<Chunk>(*chunk);
    return *chunk;
  }

  NameTable& ownNames() {
    if (m_names && m_names.use_count() == 1) return *m_names;
    const bool isDeep = m_names && m_names->depth() + 1 >= kDeepest;
    const std::size_t known = m_names && !isDeep ? m_names->end() : 0;
    m_names = boost::make_shared<NameTable>(isDeep ? nullptr : std::move(m_names), known);
    while (m_names->end() + 1 < m_size) m_names->add(nameAt());
    return *m_names;
  }

  std::vector<ChunkPtr> m_chunks;
  std::size_t m_size = 0;
  boost::shared_ptr<NameTable> m_names;
};

}  // namespace vorcore
