#include <zstd.h>

#include <cstring>
#include <memory>
#include <vector>

#include "providers/common/SplitMix.h"
#include "providers/processor/kernels/Module.h"

// Compression and back.

namespace {

using providers::splitMix;

constexpr std::size_t kWords = 2048;
constexpr std::size_t kBytes = kWords * sizeof(std::uint64_t);
constexpr int kLevel = 3;

/// What a thread needs again and again.
struct Workspace {
  struct Free {
    void operator()(ZSTD_CCtx* context) const { ZSTD_freeCCtx(context); }
    void operator()(ZSTD_DCtx* context) const { ZSTD_freeDCtx(context); }
  };
  std::unique_ptr<ZSTD_CCtx, Free> compressor{ZSTD_createCCtx()};
  std::unique_ptr<ZSTD_DCtx, Free> expander{ZSTD_createDCtx()};
  std::vector<unsigned char> compressed = std::vector<unsigned char>(ZSTD_compressBound(kBytes));
};

/// About half of the words are repeated from before, as in data that is worth compressing.
void shapeText(std::uint64_t* operands) {
  for (std::size_t i = 1; i < kWords; ++i)
    if (operands[i] & 1) operands[i] = operands[(operands[i] >> 32) % i];
}

/// What came back, the length in between, a number that stands for what was in between, and whether
/// what came back is right.
void roundTripBlock(const std::uint64_t* operands, std::uint64_t* results, std::size_t) {
  thread_local Workspace space;
  std::vector<unsigned char>& compressed = space.compressed;
  const std::size_t length = ZSTD_compressCCtx(space.compressor.get(), compressed.data(),
                                               compressed.size(), operands, kBytes, kLevel);
  results[kWords] = length;
  results[kWords + 1] = results[kWords + 2] = 0;
  if (ZSTD_isError(length)) return;
  for (std::size_t i = 0; i < length; ++i)
    results[kWords + 1] = splitMix(results[kWords + 1] ^ compressed[i], 0);
  ZSTD_decompressDCtx(space.expander.get(), results, kBytes, compressed.data(), length);
  results[kWords + 2] = std::memcmp(results, operands, kBytes) == 0;
}

const providers::Operation kKernel{"Compression and back (zstd)",
                                   providers::Unit::Kernel,
                                   kWords,
                                   kWords + 3,
                                   1,
                                   shapeText,
                                   roundTripBlock,
                                   nullptr};

}  // namespace

extern "C" __attribute__((visibility("default"))) const providers::Operation*
DIAGS_KERNELS_FUNCTION(std::size_t* count) {
  *count = 1;
  return &kKernel;
}
