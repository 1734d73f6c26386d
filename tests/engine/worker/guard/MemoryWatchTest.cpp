#include <gtest/gtest.h>

#include <new>

#include "engine/worker/guard/MemoryWatch.h"

namespace engine::guard {
namespace {

TEST(MemoryWatch, AFailureIsKnownThoughItsExceptionWasSwallowed) {
  watchMemory();
  EXPECT_FALSE(hasMemoryRunOut());
  // As an allocation does that fails; a sanitizer would end the process at a real one.
  EXPECT_THROW(std::get_new_handler()(), std::bad_alloc);
  EXPECT_TRUE(hasMemoryRunOut());
  std::set_new_handler(nullptr);
}

}  // namespace
}  // namespace engine::guard
