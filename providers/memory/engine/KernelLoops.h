#pragma once

// Included by one file for each set of instructions, which is compiled with it: everything is in an
// unnamed namespace, so that no other file calls what its processor may not know.

#include <algorithm>

#include "providers/memory/engine/Kernels.h"

namespace providers::memory {
namespace {

enum class Store { Cached, PastCaches };

// `Vector` is a type with a value type `Value` of `kWords` words and the operations `load`,
// `loadAnywhere` (also of what is not aligned), `all`
// (the same word in each), `store`,
// `stream` (writes past the caches), `add`, `exclusive`, `either`,
// `multiplyLow` (the lower halves of the words), `swapHalves`, `upperHalves` (in the
// place of the lower ones) and `isZero`.

template <class Vector>
struct Line {
  static constexpr std::size_t kParts = kLineWords / Vector::kWords;
  typename Vector::Value parts[kParts];

  static Line load(const std::uint64_t* words) {
    Line line;
    for (std::size_t i = 0; i < kParts; ++i)
      line.parts[i] = Vector::load(words + i * Vector::kWords);
    return line;
  }
  static Line loadTable(const std::uint64_t* table) {  // which need not be aligned
    Line line;
    for (std::size_t i = 0; i < kParts; ++i)
      line.parts[i] = Vector::loadAnywhere(table + i * Vector::kWords);
    return line;
  }
  template <Store kStore>
  void write(std::uint64_t* words) const {
    for (std::size_t i = 0; i < kParts; ++i) {
      if constexpr (kStore == Store::PastCaches) {
        Vector::stream(words + i * Vector::kWords, parts[i]);
      } else {
        Vector::store(words + i * Vector::kWords, parts[i]);
      }
    }
  }
  bool operator==(const Line& other) const {
    auto difference = Vector::exclusive(parts[0], other.parts[0]);
    for (std::size_t i = 1; i < kParts; ++i)
      difference = Vector::either(difference, Vector::exclusive(parts[i], other.parts[i]));
    return Vector::isZero(difference);
  }
};

template <class Vector, class Operation>
Line<Vector> eachPart(const Line<Vector>& a, const Operation& operation) {
  Line<Vector> result;
  for (std::size_t i = 0; i < Line<Vector>::kParts; ++i) result.parts[i] = operation(a.parts[i]);
  return result;
}

template <class Vector>
Line<Vector> exclusive(const Line<Vector>& a, typename Vector::Value b) {
  return eachPart<Vector>(a, [b](auto part) { return Vector::exclusive(part, b); });
}

/// What a pattern has in a line, and how that goes on to the next line up or down.
template <class Vector>
class TableCursor {
 public:
  TableCursor(const Pattern& pattern, std::size_t line, bool)
      : m_table(pattern.table.data()), m_line(line), m_invert(Vector::all(pattern.invert)) {}
  Line<Vector> value() const {
    constexpr std::size_t kLines = 64 / kLineWords;
    return exclusive<Vector>(Line<Vector>::loadTable(m_table + m_line % kLines * kLineWords),
                             m_invert);
  }
  void goUp() { ++m_line; }
  void goDown() { --m_line; }

 private:
  const std::uint64_t* m_table;
  std::size_t m_line;
  typename Vector::Value m_invert;
};

template <class Vector>
class AddressCursor {
 public:
  AddressCursor(const Pattern& pattern, std::size_t line, bool) : m_line(line) {
    std::uint64_t first[kLineWords];
    for (std::size_t i = 0; i < kLineWords; ++i) first[i] = pattern.at(i);
    m_first = Line<Vector>::loadTable(first);
    constexpr unsigned kLineBits = 3;
    std::uint64_t carried = 0;
    for (unsigned bit = kLineBits; bit < 64; ++bit)
      m_changes[bit - kLineBits] = carried ^= pattern.table[bit];
    m_rest = pattern.at(line * kLineWords) ^ pattern.at(0);
  }
  Line<Vector> value() const { return exclusive<Vector>(m_first, Vector::all(m_rest)); }
  void goUp() { m_rest ^= m_changes[__builtin_ctzll(++m_line)]; }
  void goDown() {
    if (m_line) m_rest ^= m_changes[__builtin_ctzll(m_line)];
    --m_line;
  }

 private:
  Line<Vector> m_first;
  std::uint64_t m_changes[64] = {};  ///< when a line's number goes up to one that ends in n zeros
  std::uint64_t m_rest = 0;
  std::uint64_t m_line;
};

template <class Vector>
class CountingCursor {
 public:
  CountingCursor(const Pattern& pattern, std::size_t line, bool down)
      : m_step(Vector::all((down ? 0 - pattern.step : pattern.step) * kLineWords)),
        m_invert(Vector::all(pattern.invert)) {
    std::uint64_t first[kLineWords];
    for (std::size_t i = 0; i < kLineWords; ++i)
      first[i] = pattern.start + (line * kLineWords + i) * pattern.step;
    m_count = Line<Vector>::loadTable(first);
  }
  Line<Vector> value() const { return exclusive<Vector>(m_count, m_invert); }
  void goUp() {
    m_count = eachPart<Vector>(m_count, [this](auto part) { return Vector::add(part, m_step); });
  }
  void goDown() { goUp(); }

 private:
  Line<Vector> m_count;
  typename Vector::Value m_step;
  typename Vector::Value m_invert;
};

template <class Vector>
class RandomCursor {
 public:
  RandomCursor(const Pattern& pattern, std::size_t line, bool down)
      : m_count(counting(pattern), line, down),
        m_factor(Vector::all(kRandomFactor)),
        m_invert(Vector::all(pattern.invert)) {}
  Line<Vector> value() const {
    return eachPart<Vector>(m_count.value(), [this](auto part) {
      for (int round = 0; round < 3; ++round)
        part = Vector::exclusive(Vector::swapHalves(Vector::multiplyLow(part, m_factor)),
                                 Vector::upperHalves(part));
      return Vector::exclusive(part, m_invert);
    });
  }
  void goUp() { m_count.goUp(); }
  void goDown() { m_count.goDown(); }

 private:
  static Pattern counting(const Pattern& random) {
    Pattern pattern;
    pattern.start = random.start;
    pattern.step = kRandomStep;
    return pattern;
  }
  CountingCursor<Vector> m_count;
  typename Vector::Value m_factor;
  typename Vector::Value m_invert;
};

/// Lines that will be read soon are called for, as far ahead as memory is slow: a processor by
/// itself does so within a page.
template <Store kStore>
void callFor(const std::uint64_t* words, std::size_t line, Direction direction) {
  constexpr std::size_t kLinesAhead = kStore == Store::PastCaches ? 32 : 64;
  constexpr int kForReading = 0;
  constexpr int kLocality = kStore == Store::PastCaches ? 3 : 2;
  const std::size_t ahead =
      direction == Direction::Up ? line + kLinesAhead : line - std::min(line, kLinesAhead);
  __builtin_prefetch(words + ahead * kLineWords, kForReading, kLocality);
}

/// Shows each line's number and value until `visit` says that this is enough; tells how many it
/// passed.
template <class Cursor, class Visit>
std::size_t visitLines(LineRange lines, Direction direction, const Pattern& pattern,
                       const Visit& visit) {
  if (direction == Direction::Up) {
    Cursor cursor(pattern, lines.first, false);
    for (std::size_t i = 0; i < lines.count; ++i, cursor.goUp())
      if (!visit(lines.first + i, cursor)) return i;
  } else {
    const std::size_t last = lines.first + lines.count - 1;
    Cursor cursor(pattern, last, true);
    for (std::size_t i = 0; i < lines.count; ++i, cursor.goDown())
      if (!visit(last - i, cursor)) return i;
  }
  return lines.count;
}

template <class Type>
struct Tag {
  using Cursor = Type;
};

template <class Vector, class Work>
std::size_t withCursor(Pattern::Kind kind, const Work& work) {
  switch (kind) {
    case Pattern::Kind::AddressBits:
      return work(Tag<AddressCursor<Vector>>());
    case Pattern::Kind::Counting:
      return work(Tag<CountingCursor<Vector>>());
    case Pattern::Kind::Random:
      return work(Tag<RandomCursor<Vector>>());
    case Pattern::Kind::Table:
      break;
  }
  return work(Tag<TableCursor<Vector>>());
}

template <class Vector>
void writeLines(std::uint64_t* words, LineRange lines, const Pattern& pattern) {
  withCursor<Vector>(pattern.kind, [&](auto tag) {
    using Cursor = typename decltype(tag)::Cursor;
    return visitLines<Cursor>(
        lines, Direction::Up, pattern, [words](std::size_t line, const Cursor& cursor) {
          cursor.value().template write<Store::PastCaches>(words + line * kLineWords);
          return true;
        });
  });
}

template <class Vector>
std::size_t checkLines(const std::uint64_t* words, LineRange lines, Direction direction,
                       const Pattern& expected) {
  return withCursor<Vector>(expected.kind, [&](auto tag) {
    using Cursor = typename decltype(tag)::Cursor;
    return visitLines<Cursor>(
        lines, direction, expected, [words, direction](std::size_t line, const Cursor& cursor) {
          callFor<Store::Cached>(words, line, direction);
          return Line<Vector>::load(words + line * kLineWords) == cursor.value();
        });
  });
}

/// The next pattern is most often the inverse of the one before, which is known already.
template <class Vector, Store kStore>
std::size_t invertLines(std::uint64_t* words, LineRange lines, Direction direction,
                        const Pattern& expected) {
  const auto all = Vector::all(~std::uint64_t{0});
  return withCursor<Vector>(expected.kind, [&](auto tag) {
    using Cursor = typename decltype(tag)::Cursor;
    return visitLines<Cursor>(lines, direction, expected,
                              [words, direction, all](std::size_t line, const Cursor& cursor) {
                                std::uint64_t* const at = words + line * kLineWords;
                                callFor<kStore>(words, line, direction);
                                const Line<Vector> value = cursor.value();
                                if (!(Line<Vector>::load(at) == value)) return false;
                                exclusive<Vector>(value, all).template write<kStore>(at);
                                return true;
                              });
  });
}

/// The other pattern goes along, with a cursor of its own.
template <class Vector, Store kStore>
std::size_t replaceLines(std::uint64_t* words, LineRange lines, Direction direction,
                         const Pattern& expected, const Pattern& next) {
  const bool down = direction == Direction::Down;
  const std::size_t first = down ? lines.first + lines.count - 1 : lines.first;
  return withCursor<Vector>(expected.kind, [&](auto tag) {
    using Cursor = typename decltype(tag)::Cursor;
    Cursor other(next, first, down);
    return visitLines<Cursor>(
        lines, direction, expected,
        [words, direction, down, &other](std::size_t line, const Cursor& cursor) {
          std::uint64_t* const at = words + line * kLineWords;
          callFor<kStore>(words, line, direction);
          if (!(Line<Vector>::load(at) == cursor.value())) return false;
          other.value().template write<kStore>(at);
          down ? other.goDown() : other.goUp();
          return true;
        });
  });
}

template <class Vector, Store kStore>
std::size_t checkAndWriteLines(std::uint64_t* words, LineRange lines, Direction direction,
                               const Pattern& expected, const Pattern& next) {
  return next == expected.inverse()
             ? invertLines<Vector, kStore>(words, lines, direction, expected)
             : replaceLines<Vector, kStore>(words, lines, direction, expected, next);
}

template <class Vector>
constexpr Kernels kernelsOf(const char* name) {
  return {name,
          writeLines<Vector>,
          checkLines<Vector>,
          checkAndWriteLines<Vector, Store::Cached>,
          checkAndWriteLines<Vector, Store::PastCaches>,
          Vector::drain};
}

}  // namespace
}  // namespace providers::memory
