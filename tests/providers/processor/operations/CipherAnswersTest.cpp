#include <gtest/gtest.h>

#include "providers/processor/operations/CipherAnswers.h"

namespace providers {
namespace {

TEST(CipherAnswers, AProductWithoutCarries) {
  const Block128 product = carrylessProduct(0x8000000000000003, 0x5);
  EXPECT_EQ(product.low, 0x800000000000000FU);
  EXPECT_EQ(product.high, 0x2U);
}

TEST(CipherAnswers, ThePublishedProductsOfBytes) {
  EXPECT_EQ(fieldProduct(0x57, 0x83), 0xC1);
  EXPECT_EQ(fieldProduct(0x57, 0x13), 0xFE);
  EXPECT_EQ(fieldInverse(0x53), 0xCA);
  EXPECT_EQ(fieldInverse(0), 0);
}

TEST(CipherAnswers, TheChecksumOfThePublishedText) {
  // 32 bytes of zeros: RFC 3720, appendix B.4.
  std::uint64_t crc = 0xFFFFFFFF;
  for (int i = 0; i < 4; ++i) crc = crc32c(crc, 0);
  EXPECT_EQ(crc ^ 0xFFFFFFFF, 0x8A9136AAU);
}

TEST(CipherAnswers, ARoundOfThePublishedExample) {
  // FIPS 197, appendix B: the start of round 1, its key, and the start of round 2.
  const Block128 next =
      aesRound({0x2BE2F4A0BEE33D19, 0x0848F8E92A8DC69A}, {0xB12C548817FEFAA0, 0x05766C2A3939A323});
  EXPECT_EQ(next.low, 0x2B359F68F27F9CA4U);
  EXPECT_EQ(next.high, 0x49506A0243EA5B6BU);
}

TEST(CipherAnswers, ARoundBackUndoesARound) {
  // The instruction's inverse round mixes last: without the key, a round of it undoes the bytes and
  // rows of one whose columns were not mixed; all bytes the same stay unmixed.
  const Block128 same{0x4242424242424242, 0x4242424242424242};
  const Block128 there = aesRound(same, {});
  const Block128 back = aesInverseRound(there, {});
  EXPECT_EQ(back.low, same.low);
  EXPECT_EQ(back.high, same.high);
}

TEST(CipherAnswers, ThePublishedHash) {
  // "abc", filled up to a block: FIPS 180-4.
  std::uint32_t block[16] = {0x61626380};
  block[15] = 24;
  std::uint32_t state[8] = {0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                            0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};
  sha256Block(block, state);
  const std::uint32_t expected[8] = {0xBA7816BF, 0x8F01CFEA, 0x414140DE, 0x5DAE2223,
                                     0xB00361A3, 0x96177A9C, 0xB410FF61, 0xF20015AD};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(state[i], expected[i]) << i;
}

}  // namespace
}  // namespace providers
