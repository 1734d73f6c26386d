#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace cmpinsp {

/// Bytes that no writer of the cache wrote. It never leaves the cache: what catches it throws the
/// file away.
struct CacheDamage {
  std::string what;
};

/// Reads what a `ByteWriter` wrote, from bytes that may hold anything: what would lie outside them
/// throws `CacheDamage`. The bytes outlive the reader and the views that it answers.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes) noexcept : m_bytes(bytes) {}

  std::uint8_t u8() { return static_cast<std::uint8_t>(number(1)); }
  std::uint32_t u32() { return static_cast<std::uint32_t>(number(4)); }
  std::uint64_t u64() { return number(8); }

  /// Flags of which none beyond `most` bits is set.
  unsigned flags(unsigned most) {
    const unsigned bits = u8();
    if (bits >> most != 0) throw CacheDamage{"unknown flags"};
    return bits;
  }

  /// A number up to `most`: what an enumeration has, for instance.
  std::uint8_t upTo(std::uint8_t most) {
    const std::uint8_t value = u8();
    if (value > most) throw CacheDamage{"a number is too large"};
    return value;
  }

  /// How many items follow, each of at least `smallest` bytes: never more than there is room for,
  /// so that it may be reserved.
  std::size_t count(std::size_t smallest) {
    const std::size_t items = u32();
    if (items > m_bytes.size() / smallest) throw CacheDamage{"a count is too large"};
    return items;
  }

  std::string_view text() { return take(count(1)); }

  /// How many bytes are still to be read.
  std::size_t left() const noexcept { return m_bytes.size(); }

 private:
  std::string_view take(std::size_t length) {
    if (length > m_bytes.size()) throw CacheDamage{"it ends too early"};
    const std::string_view taken = m_bytes.substr(0, length);
    m_bytes.remove_prefix(length);
    return taken;
  }

  std::uint64_t number(std::size_t width) {
    const std::string_view bytes = take(width);
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i) {
      value |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
    }
    return value;
  }

  std::string_view m_bytes;  ///< those that are still to be read
};

}  // namespace cmpinsp
