#include <gtest/gtest.h>

#include "engine/Offer.h"
#include "engine/identity/ThisMachine.h"

namespace engine {
namespace {

TEST(ThisMachine, HasANameAndKinds) {
  const Identity identity = thisMachine();
  EXPECT_NE(identity.host, "");
  for (const Part& part : identity.parts) {
    EXPECT_NE(part.kind, "");
    EXPECT_NE(part.name, "");
  }
}

}  // namespace
}  // namespace engine
