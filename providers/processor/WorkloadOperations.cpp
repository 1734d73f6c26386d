#include <array>
#include <numeric>

#include "providers/common/SplitMix.h"
#include "providers/processor/Operations.h"

namespace providers {

namespace {

constexpr std::uint32_t kCrcPolynomial = 0xEDB88320;  // CRC-32 of IEEE 802.3, bits reversed

std::uint32_t crcStep(std::uint32_t crc) { return crc & 1 ? crc >> 1 ^ kCrcPolynomial : crc >> 1; }

std::array<std::uint32_t, 256> makeCrcTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < table.size(); ++i) {
    std::uint32_t crc = i;
    for (unsigned bit = 0; bit < 8; ++bit) crc = crcStep(crc);
    table[i] = crc;
  }
  return table;
}

std::uint32_t crcByTable(const std::vector<std::uint8_t>& data) {
  static const std::array<std::uint32_t, 256> table = makeCrcTable();
  std::uint32_t crc = ~std::uint32_t{0};
  for (const std::uint8_t byte : data) crc = crc >> 8 ^ table[(crc ^ byte) & 0xFF];
  return ~crc;
}

std::uint32_t crcByBits(const std::vector<std::uint8_t>& data) {
  std::uint32_t crc = ~std::uint32_t{0};
  for (const std::uint8_t byte : data) {
    crc ^= byte;
    for (unsigned bit = 0; bit < 8; ++bit) crc = crcStep(crc);
  }
  return ~crc;
}

constexpr std::size_t kMatrixSize = 64;
using Matrix = std::vector<std::uint64_t>;
using Vector = std::array<std::uint64_t, kMatrixSize>;

Matrix makeMatrix(std::uint64_t seed) {
  Matrix matrix(kMatrixSize * kMatrixSize);
  for (std::size_t i = 0; i < matrix.size(); ++i) matrix[i] = splitMix(seed, i);
  return matrix;
}

Matrix multiply(const Matrix& left, const Matrix& right) {
  Matrix product(left.size());
  for (std::size_t row = 0; row < kMatrixSize; ++row) {
    for (std::size_t inner = 0; inner < kMatrixSize; ++inner) {
      const std::uint64_t factor = left[row * kMatrixSize + inner];
      for (std::size_t column = 0; column < kMatrixSize; ++column)
        product[row * kMatrixSize + column] += factor * right[inner * kMatrixSize + column];
    }
  }
  return product;
}

Vector multiply(const Matrix& matrix, const Vector& vector) {
  Vector product{};
  for (std::size_t row = 0; row < kMatrixSize; ++row)
    product[row] = std::inner_product(
        vector.begin(), vector.end(),
        matrix.begin() + static_cast<std::ptrdiff_t>(row * kMatrixSize), std::uint64_t{0});
  return product;
}

/// One cycle through all places, in random order (Sattolo, 1986).
std::vector<std::uint32_t> makeCycle(std::uint64_t seed, std::size_t count) {
  std::vector<std::uint32_t> cycle(count);
  std::iota(cycle.begin(), cycle.end(), std::uint32_t{0});
  for (std::size_t i = count - 1; i > 0; --i) std::swap(cycle[i], cycle[splitMix(seed, i) % i]);
  return cycle;
}

}  // namespace

std::optional<Mismatch> computeChecksums(std::uint64_t seed, ResultTap& tap) {
  constexpr std::size_t kBytes = 65536;
  constexpr std::uint32_t kCheckValue = 0xCBF43926;  // published for the text 123456789
  const std::vector<std::uint8_t> digits{'1', '2', '3', '4', '5', '6', '7', '8', '9'};
  if (const auto wrong = compare(kCheckValue, tap.pass(crcByTable(digits)))) return wrong;
  std::vector<std::uint8_t> data(kBytes);
  for (std::size_t i = 0; i < data.size(); ++i)
    data[i] = static_cast<std::uint8_t>(splitMix(seed, i) >> 56);
  return compare(crcByBits(data), tap.pass(crcByTable(data)));
}

std::optional<Mismatch> sievePrimes(std::uint64_t, ResultTap& tap) {
  constexpr std::size_t kLimit = 1000000;
  constexpr std::uint64_t kPrimesBelow = 78498;
  std::vector<bool> composite(kLimit);
  std::uint64_t primes = 0;
  for (std::size_t number = 2; number < kLimit; ++number) {
    if (composite[number]) continue;
    ++primes;
    for (std::size_t multiple = number * number; multiple < kLimit; multiple += number)
      composite[multiple] = true;
  }
  return compare(kPrimesBelow, tap.pass(primes));
}

std::optional<Mismatch> multiplyMatrices(std::uint64_t seed, ResultTap& tap) {
  const Matrix left = makeMatrix(splitMix(seed, 0));
  const Matrix right = makeMatrix(splitMix(seed, 1));
  Matrix product = multiply(left, right);
  for (std::uint64_t& element : product) element = tap.pass(element);
  // The product of the matrices and a vector is the same in either order (Freivalds, 1977). Odd
  // factors lose no bit of a wrong element.
  Vector vector{};
  for (std::size_t i = 0; i < kMatrixSize; ++i) vector[i] = splitMix(~seed, i) | 1;
  const Vector expected = multiply(left, multiply(right, vector));
  const Vector actual = multiply(product, vector);
  for (std::size_t i = 0; i < kMatrixSize; ++i) {
    if (const auto wrong = compare(expected[i], actual[i])) return wrong;
  }
  return std::nullopt;
}

std::optional<Mismatch> walkCaches(std::uint64_t seed, ResultTap& tap) {
  // From a first-level cache to more than most second-level caches hold.
  for (const std::size_t count : {std::size_t{4096}, std::size_t{65536}, std::size_t{524288}}) {
    const std::vector<std::uint32_t> cycle = makeCycle(seed, count);
    std::uint64_t sum = 0;
    std::uint32_t place = 0;
    for (std::size_t step = 0; step < count; ++step) {
      place = cycle[place];
      sum += place;
    }
    const std::uint64_t everyPlace = std::uint64_t{count} * (count - 1) / 2;
    if (const auto wrong = compare(everyPlace, tap.pass(sum))) return wrong;
    if (const auto wrong = compare(0, tap.pass(place))) return wrong;
  }
  return std::nullopt;
}

}  // namespace providers
