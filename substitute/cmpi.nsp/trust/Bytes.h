#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace cmpinsp {

/// The bytes of a file that somebody else made. What is asked for may lie anywhere.
class Bytes {
 public:
  Bytes() = default;
  Bytes(const Bytes&) = delete;
  Bytes& operator=(const Bytes&) = delete;
  virtual ~Bytes() = default;

  /// `length` bytes from `offset` on; nothing unless all of them are there.
  virtual std::optional<std::string> read(std::uint64_t offset, std::size_t length) = 0;
  virtual std::uint64_t size() const = 0;

  /// A little-endian number of `length` bytes, 8 at most.
  std::optional<std::uint64_t> number(std::uint64_t offset, std::size_t length);
  /// What is there up to a NUL, which has to come within `most` bytes.
  std::optional<std::string> text(std::uint64_t offset, std::size_t most);
};

/// Those of an open file; none where it cannot be read.
std::unique_ptr<Bytes> bytesOfFile(const std::string& path);
/// Those of `content`, which outlives them.
std::unique_ptr<Bytes> bytesOf(const std::string& content);

/// The little-endian number in the `length` bytes of `bytes` from `offset` on, all of them there.
std::uint64_t numberIn(const std::string& bytes, std::size_t offset, std::size_t length);

}  // namespace cmpinsp
