#include <gtest/gtest.h>

#include "providers/port/echo/EchoDoor.h"
#include "tests/providers/ForbiddenCalls.h"

namespace providers::port {
namespace {

TEST(EchoDoor, ASignalIsNoLostPacket) {
  const OpenedEcho echo = openLoopbackEcho();
  if (!echo.door) GTEST_SKIP() << echo.problem;
  if (!echo.door->send({7, "x"}).empty()) GTEST_SKIP() << "there is no loopback interface";
  std::optional<EchoPacket> answer;
  if (!runWithout({SYS_poll, SYS_ppoll}, EINTR, [&] { answer = echo.door->receive(5000); }))
    GTEST_SKIP() << "this system allows no sandbox";
  EXPECT_TRUE(answer);
}

// Catches a packet that is lost, and taken for a fault of the machine, because somebody else sends
// large ones at the same time.
TEST(EchoDoor, WhatOthersSendDoesNotCrowdOutTheAnswer) {
  const OpenedEcho other = openLoopbackEcho();
  const OpenedEcho echo = openLoopbackEcho();
  if (!echo.door || !other.door) GTEST_SKIP() << echo.problem;
  if (!other.door->send({0, "is it up?"}).empty()) GTEST_SKIP() << "there is no loopback interface";
  for (std::uint16_t i = 1; i <= 20; ++i) {
    ASSERT_EQ(other.door->send({i, std::string(65000, 'x')}), "");
  }
  ASSERT_EQ(echo.door->send({100, "mine"}), "");
  std::optional<EchoPacket> answer = echo.door->receive(1000);
  while (answer && answer->sequence != 100) answer = echo.door->receive(1000);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->content, "mine");
}

}  // namespace
}  // namespace providers::port
