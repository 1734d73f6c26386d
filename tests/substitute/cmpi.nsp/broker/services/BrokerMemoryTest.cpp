#include <cstring>

#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

class BrokerMemory : public InCall {
 protected:
  const CMPIBrokerMemFT* memory = broker()->mft;
};

TEST_F(BrokerMemory, IsGivenAndTakenBack) {
  auto* bytes = static_cast<char*>(memory->cmpiMalloc(broker(), 4));
  std::memcpy(bytes, "abc", 4);
  bytes = static_cast<char*>(memory->cmpiRealloc(broker(), bytes, 4096));
  EXPECT_STREQ(bytes, "abc");
  memory->cmpiFree(broker(), bytes);
  char* copy = memory->cmpiStrDup(broker(), "text");
  EXPECT_STREQ(copy, "text");
  memory->cmpiFree(broker(), copy);
}

TEST_F(BrokerMemory, CallocGivesZeroes) {
  const auto* bytes = static_cast<const char*>(memory->cmpiCalloc(broker(), 2, 2));
  EXPECT_EQ(std::memcmp(bytes, "\0\0\0\0", 4), 0);
}

TEST_F(BrokerMemory, WhatOverflowsIsRefused) {
  EXPECT_EQ(memory->cmpiCalloc(broker(), ~std::size_t{0}, 2), nullptr);
}

// Some allocators end the process over such a size.
TEST_F(BrokerMemory, MoreThanAnybodyCanMeanIsRefused) {
  auto* bytes = static_cast<char*>(memory->cmpiMalloc(broker(), 4));
  std::memcpy(bytes, "abc", 4);
  EXPECT_EQ(memory->cmpiMalloc(broker(), ~std::size_t{0} / 2), nullptr);
  EXPECT_EQ(memory->cmpiRealloc(broker(), bytes, ~std::size_t{0} / 2), nullptr);
  EXPECT_STREQ(bytes, "abc");
  memory->cmpiFree(broker(), bytes);
}

TEST_F(BrokerMemory, OthersMemoryIsLeftAlone) {
  int variable = 5;
  memory->cmpiFree(broker(), &variable);
  memory->cmpiFree(broker(), nullptr);
  EXPECT_EQ(memory->cmpiRealloc(broker(), &variable, 10), nullptr);
  EXPECT_EQ(memory->cmpiStrDup(broker(), nullptr), nullptr);
  EXPECT_EQ(variable, 5);
}

TEST_F(BrokerMemory, WhatAProviderForgetsEndsWithIt) {
  memory->cmpiMalloc(broker(), 100);
  own.retire();
}

TEST_F(BrokerMemory, ObjectsCanBeFreedEarly) {
  CMPIInstance* inst = fan();
  memory->freeInstance(broker(), inst);
  EXPECT_EQ(findLive(inst), nullptr);
  CMPIObjectPath* path = fanPath();
  memory->freeObjectPath(broker(), path);
  EXPECT_EQ(findLive(path), nullptr);
  CMPIString* string = CMNewString(broker(), "x", nullptr);
  memory->freeString(broker(), string);
  memory->freeString(broker(), string);
  EXPECT_EQ(findLive(string), nullptr);
  CMPIArgs* args = CMNewArgs(broker(), nullptr);
  memory->freeArgs(broker(), args);
  EXPECT_EQ(findLive(args), nullptr);
}

TEST_F(BrokerMemory, AMarkOfAnotherThreadIsRefused) {
  EXPECT_EQ(memory->release(broker(), foreignAddress()).rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(memory->release(broker(), nullptr).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace cmpinsp::broker
