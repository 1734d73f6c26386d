#include <gtest/gtest.h>

#include <new>
#include <vector>

#include "host/MemoryWatch.h"

namespace host {
namespace {

/// More than any machine's addresses reach, and less than what is refused without an attempt.
constexpr std::size_t kTooMuch = std::size_t{1} << 60U;

TEST(MemoryWatch, AFailureIsKnownThoughItsExceptionWasSwallowed) {
  watchMemory();
  EXPECT_FALSE(hasMemoryRunOut());
  EXPECT_THROW(::operator delete(::operator new(kTooMuch)), std::bad_alloc);
  EXPECT_TRUE(hasMemoryRunOut());
  std::set_new_handler(nullptr);
}

}  // namespace
}  // namespace host
