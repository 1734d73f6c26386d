#include <gtest/gtest.h>

#include <new>

#include "engine/worker/guard/MemoryWatch.h"

namespace engine::guard {
namespace {

// Catches a provider that is taken for one without memory since it asked how much there is.
TEST(MemoryWatch, AFailureWhileThereIsMemoryIsNone) {
  watchMemory();
  EXPECT_THROW(std::get_new_handler()(), std::bad_alloc);
  EXPECT_FALSE(hasMemoryRunOut());
  std::set_new_handler(nullptr);
}

TEST(MemoryWatch, AFailureIsKnownThoughItsExceptionWasSwallowed) {
  watchMemory([]() noexcept { return false; });
  EXPECT_FALSE(hasMemoryRunOut());
  // As an allocation does that fails; a sanitizer would end the process at a real one.
  EXPECT_THROW(std::get_new_handler()(), std::bad_alloc);
  EXPECT_TRUE(hasMemoryRunOut());
  EXPECT_EQ(failuresForWantOfMemory(), 1U);
  std::set_new_handler(nullptr);
}

}  // namespace
}  // namespace engine::guard
