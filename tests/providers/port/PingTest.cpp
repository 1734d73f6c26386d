#include <gtest/gtest.h>

#include <deque>

#include "providers/port/services/PingDiagnostic.h"
#include "tests/providers/port/OnePort.h"

namespace providers::port {
namespace {

/// A loopback interface that may lose or change what is sent.
struct Loopback : EchoDoor {
  std::string send(const EchoPacket& packet) override {
    sizes.push_back(packet.content.size());
    if (problem.empty()) queue.push_back(packet);
    return problem;
  }
  std::optional<EchoPacket> receive(int) override {
    if (queue.empty()) return std::nullopt;
    EchoPacket packet = queue.front();
    queue.pop_front();
    return spoil(std::move(packet));
  }
  std::function<std::optional<EchoPacket>(EchoPacket)> spoil = [](EchoPacket packet) {
    return std::optional<EchoPacket>(std::move(packet));
  };
  std::string problem;
  std::deque<EchoPacket> queue;
  std::vector<std::size_t> sizes;
};

struct Pinged : OnePort {
  Pinged() {
    port.name = port.id = "lo";
    port.loopback = true;
  }
  Outcome ping(const RunSettings& settings = {}) {
    PingDiagnostic test({finder(), reader(), [this] {
                           OpenedEcho opened;
                           opened.problem = refusal;
                           if (refusal.empty()) {
                             auto door = std::make_unique<Loopback>();
                             prepare(*door);
                             opened.door = std::move(door);
                           }
                           return opened;
                         }});
    return test.run(test.devices().at(0), settings, control);
  }
  std::string refusal;
  std::function<void(Loopback&)> prepare = [](Loopback&) {};
};

TEST(Ping, OfAGoodLoopbackInterfaceFindsNothing) {
  Pinged pinged;
  const Outcome outcome = pinged.ping();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_EQ(outcome.summary, "100 of 100 packets came back");
  EXPECT_EQ(pinged.ping(with("Packets", std::uint32_t{10}, true)).summary,
            "2 of 2 packets came back");
}

TEST(Ping, LostPacketsAreAFault) {
  Pinged pinged;
  pinged.prepare = [](Loopback& door) {
    door.spoil = [](EchoPacket packet) {
      return packet.sequence % 10 == 0 ? std::nullopt : std::optional(packet);
    };
  };
  const Outcome outcome = pinged.ping();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_TRUE(tells(outcome, "10 did not come back and 0 came back changed"));
  EXPECT_EQ(outcome.errors.at(0).code, "Lost packet");
}

TEST(Ping, ChangedPacketsAreAFault) {
  Pinged pinged;
  pinged.prepare = [](Loopback& door) {
    door.spoil = [](EchoPacket packet) {
      if (packet.sequence == 5)
        packet.content.back() = static_cast<char>(packet.content.back() ^ 1);
      return std::optional(packet);
    };
  };
  const Outcome outcome = pinged.ping();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_EQ(measuredIn(outcome, "ChangedPackets"), 1);
  EXPECT_EQ(outcome.errors.at(0).code, "Changed packet");
}

TEST(Ping, AFloodOfOtherAnswersDoesNotHoldTheRun) {
  Pinged pinged;
  pinged.prepare = [](Loopback& door) {
    door.spoil = [&door](EchoPacket packet) {
      packet.sequence = 60001;
      door.queue.push_back(packet);
      return std::optional(packet);
    };
  };
  EXPECT_TRUE(tells(pinged.ping(), "of 3 packets none came back"));
}

TEST(Ping, AnInterfaceThatReturnsNothingIsGivenUpSoon) {
  Pinged pinged;
  pinged.prepare = [](Loopback& door) { door.problem = "not permitted"; };
  const Outcome outcome = pinged.ping();
  EXPECT_EQ(outcome.summary, "Not tested: no echo comes back");
  EXPECT_TRUE(tells(outcome, "cannot be sent: not permitted"));
}

// Catches a machine that is set up to answer no echo, taken for a broken one.
TEST(Ping, ASystemThatAnswersNoEchoAtAllIsNotFaulty) {
  Pinged pinged;
  pinged.prepare = [](Loopback& door) {
    door.spoil = [](const EchoPacket&) { return std::optional<EchoPacket>(); };
  };
  const Outcome outcome = pinged.ping();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(outcome, "look whether "));
}

TEST(Ping, WithoutTheRightOrWithTheInterfaceOffIsIncomplete) {
  Pinged pinged;
  pinged.refusal = "no socket";
  EXPECT_EQ(pinged.ping().state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(pinged.ping(), "no socket"));
  pinged.state.on = false;
  EXPECT_EQ(pinged.ping().summary, "Not tested: the port is switched off");
}

TEST(Ping, IsOfferedForTheLoopbackInterfaceAlone) {
  OnePort port;
  EXPECT_TRUE(PingDiagnostic({port.finder(), port.reader(), {}}).devices().empty());
  Pinged pinged;
  EXPECT_TRUE(pinged.statusTest().devices().empty());
}

TEST(EchoDoor, GoesThroughTheMachineWhereTheUserMay) {
  const OpenedEcho echo = openLoopbackEcho();
  if (!echo.door) GTEST_SKIP() << echo.problem;
  const std::string content(3000, 'x');
  const std::string problem = echo.door->send({7, content});
  if (!problem.empty()) GTEST_SKIP() << "there is no loopback interface: " << problem;
  const auto answer = echo.door->receive(5000);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->sequence, 7);
  EXPECT_EQ(answer->content, content);
}

}  // namespace
}  // namespace providers::port
