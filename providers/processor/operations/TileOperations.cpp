#include <cstring>

#include "providers/processor/operations/Features.h"
#include "providers/processor/operations/OperationTable.h"

// Windows' processes are not given tiles.
#if DIAGS_X86 && defined(__linux__)
#define DIAGS_TILES 1
#else
#define DIAGS_TILES 0
#endif

#if DIAGS_TILES
#include <immintrin.h>
#endif

// Products of whole matrices of bytes, in the tiles of AMX: 16 rows of 64 bytes each, of which four
// bytes of the left one's row and four of the right one's make a product, and sixteen products a
// sum of 32 bits.

namespace providers {

namespace {

constexpr std::size_t kRows = 16;
constexpr std::size_t kLanes = 16;  // of 32 bits, in a row
constexpr std::size_t kRowBytes = 64;
constexpr std::size_t kTileWords = kRows * kRowBytes / 8;
constexpr unsigned kSteps = 4;

using Tile = std::uint32_t[kRows][kLanes];

template <class Byte>
std::uint32_t productOf(std::uint32_t left, std::uint32_t right) {
  std::uint32_t sum = 0;
  for (const unsigned shift : {0U, 8U, 16U, 24U})
    sum += static_cast<std::uint32_t>(static_cast<Byte>(left >> shift) *
                                      static_cast<Byte>(right >> shift));
  return sum;
}

/// Sums go over their upper end like all numbers without a sign.
template <class Byte>
void addProduct(Tile& sums, const Tile& left, const Tile& right) {
  for (std::size_t row = 0; row < kRows; ++row)
    for (std::size_t inner = 0; inner < kLanes; ++inner)
      for (std::size_t lane = 0; lane < kLanes; ++lane)
        sums[row][lane] += productOf<Byte>(left[row][inner], right[inner][lane]);
}

void tileAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  Tile sums = {}, left, right;
  std::memcpy(left, operands, sizeof left);
  std::memcpy(right, operands + kTileWords, sizeof right);
  for (unsigned step = 0; step < kSteps; ++step) {
    addProduct<std::int8_t>(sums, left, right);
    addProduct<std::uint8_t>(sums, left, right);
    std::memcpy(left, sums, sizeof left);
  }
  std::memcpy(results, sums, sizeof sums);
}

#if DIAGS_TILES

/// What ldtilecfg takes: the kind of division, and of each of the tiles 0 to 2 its bytes in a row
/// and its rows.
struct TileShapes {
  std::uint8_t palette = 1;
  std::uint8_t startRow = 0;
  std::uint8_t reserved[14] = {};
  std::uint16_t rowBytes[16] = {kRowBytes, kRowBytes, kRowBytes};
  std::uint8_t rows[16] = {kRows, kRows, kRows};
};
static_assert(sizeof(TileShapes) == 64);

const TileShapes kShapes;

__attribute__((target("amx-tile,amx-int8"))) void tileBlock(const std::uint64_t* operands,
                                                            std::uint64_t* results,
                                                            std::size_t items) {
  _tile_loadconfig(&kShapes);
  for (std::size_t item = 0; item < items; ++item) {
    const std::uint64_t* const first = operands + item * 2 * kTileWords;
    std::uint64_t* const sums = results + item * kTileWords;
    _tile_zero(0);
    _tile_loadd(1, first, kRowBytes);
    _tile_loadd(2, first + kTileWords, kRowBytes);
    for (unsigned step = 0; step < kSteps; ++step) {
      _tile_dpbssd(0, 1, 2);
      _tile_dpbuud(0, 1, 2);
      _tile_stored(0, sums, kRowBytes);
      _tile_loadd(1, sums, kRowBytes);
    }
  }
  _tile_release();
}

#else

constexpr auto tileBlock = nullptr;

#endif

}  // namespace

Operation tileOperation() {
  return {"Products of matrices of bytes (AMX-INT8)",
          Unit::Integer,
          2 * kTileWords,
          kTileWords,
          4,
          nullptr,
          tileBlock,
          tileAnswer};
}

void addTileOperations(Operations& operations) {
  if (features().tiles) operations.push_back(tileOperation());
}

}  // namespace providers
