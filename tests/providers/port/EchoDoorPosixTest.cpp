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

}  // namespace
}  // namespace providers::port
