#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "providers/disk/reading/ReadError.h"

namespace providers::disk {

struct Extent {
  std::uint64_t offset = 0;
  std::uint32_t bytes = 0;
};
inline bool operator==(const Extent& left, const Extent& right) {
  return left.offset == right.offset && left.bytes == right.bytes;
}

/// How a read has ended.
struct ReadAnswer {
  unsigned slot = 0;
  std::uint32_t bytes = 0;  ///< that came
  ReadError error = ReadError::None;
};

/// The system takes no further reads, whatever becomes of the drive; the text tells why.
class NoFurtherReads : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Blocks that are read past every cache. A slot is a place for one read that is in flight, with
/// memory of its own. For one thread. Where reads do not come back, its end waits for them, but for
/// a few seconds only; what they are read into is left alone then.
class BlockSource {
 public:
  virtual ~BlockSource() = default;
  virtual unsigned slots() const = 0;
  virtual std::uint32_t slotBytes() const = 0;
  /// What the last read of the slot brought.
  virtual const std::uint8_t* data(unsigned slot) const = 0;
  /// Begins to read into a slot that has no read in flight. Offset and length are multiples of the
  /// logical block.
  virtual void start(unsigned slot, const Extent& extent) = 0;
  /// Appends the reads that have ended, after waiting for one for at most so long. Throws
  /// `NoFurtherReads`.
  virtual void collect(std::vector<ReadAnswer>& ended, double seconds) = 0;
  /// By what means it reads: "io_uring".
  virtual const char* means() const = 0;
};

/// A source, or why there is none.
struct OpenedSource {
  std::unique_ptr<BlockSource> source;
  std::string problem;  ///< a sentence for people, with the right that is missing
};

struct SourceShape {
  unsigned slots = 1;
  std::uint32_t slotBytes = 0;
};

using OpenSource = std::function<OpenedSource(const std::string& node, const SourceShape& shape,
                                              const std::string& number)>;

/// Opens a disk, or a file that stands for one, for reading past the cache. Refuses a device with
/// another number than that, if there is one.
OpenedSource openSource(const std::string& node, const SourceShape& shape,
                        const std::string& number = {});

}  // namespace providers::disk
