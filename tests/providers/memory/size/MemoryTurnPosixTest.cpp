#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>

#include "providers/memory/size/MemoryTurn.h"

namespace providers::memory {
namespace {

constexpr uid_t kNobody = 65534;

/// As what another user is taken for, as long as the object lives.
class AsNobody {
 public:
  AsNobody() : m_done(seteuid(kNobody) == 0) {}
  ~AsNobody() { static_cast<void>(m_done && seteuid(0) == 0); }
  bool isDone() const { return m_done; }

 private:
  const bool m_done;
};

/// Somebody who takes a name that is not his.
class Squatter {
 public:
  explicit Squatter(const std::string& name) : m_socket(socket(AF_UNIX, SOCK_STREAM, 0)) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::copy(name.begin(), name.end(), address.sun_path + 1);
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    m_hasName = bind(m_socket, reinterpret_cast<const sockaddr*>(&address), length) == 0;
  }
  ~Squatter() { close(m_socket); }
  bool hasName() const { return m_hasName; }
  void listen() const { ::listen(m_socket, 1); }

 private:
  const int m_socket;
  bool m_hasName = false;
};

class MemoryTurnPosixTest : public ::testing::Test {
 protected:
  const std::string name = "diagsrunner-test-" + std::to_string(std::random_device()());
  const std::string fullName = name + "-" + std::to_string(geteuid());
};

TEST_F(MemoryTurnPosixTest, WhoTakesTheNameAndDoesNotAnswerKeepsNobodyOut) {
  const Squatter squatter(fullName);
  ASSERT_TRUE(squatter.hasName());
  EXPECT_TRUE(takeTurn(name)) << "whoever has it does not answer";
}

// Catches a user who keeps everybody else from testing memory by taking the name.
TEST_F(MemoryTurnPosixTest, AnotherUserWhoAnswersUnderTheNameIsNotBelieved) {
  const Squatter squatter(fullName);
  {
    const AsNobody other;
    if (!other.isDone()) GTEST_SKIP() << "only root can be somebody else";
    squatter.listen();
  }
  EXPECT_TRUE(takeTurn(name));
}

TEST_F(MemoryTurnPosixTest, AUserWaitsForRootAndRootForNobody) {
  const auto roots = takeTurn(name);
  {
    const AsNobody user;
    if (!user.isDone()) GTEST_SKIP() << "only root can be somebody else";
    EXPECT_FALSE(takeTurn(name));
  }
  std::unique_ptr<MemoryTurn> users;
  {
    const AsNobody user;
    users = takeTurn(name + "0");
    ASSERT_TRUE(users);
    EXPECT_FALSE(takeTurn(name + "0"));
  }
  EXPECT_TRUE(takeTurn(name + "0"));
}

}  // namespace
}  // namespace providers::memory
