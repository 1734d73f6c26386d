#include <gtest/gtest.h>

#include <cstdlib>
#include <exception>
#include <new>

#include "host/MemoryWatch.h"

namespace host {
namespace {

TEST(MemoryWatch, AFailureIsKnownThoughItsExceptionWasSwallowed) {
  watchMemory();
  EXPECT_FALSE(hasMemoryRunOut());
  // As an allocation does that fails; a sanitizer would end the process at a real one.
  EXPECT_THROW(std::get_new_handler()(), std::bad_alloc);
  EXPECT_TRUE(hasMemoryRunOut());
  std::set_new_handler(nullptr);
}

[[noreturn]] void terminateAfterAFailure() {
  watchMemory();
  try {
    std::get_new_handler()();
  } catch (const std::bad_alloc&) {
  }
  std::terminate();
}

// Catches "terminate called": where memory ran out, an exception may have no way out.
TEST(MemoryWatch, ATerminationAfterAFailureIsWantOfMemory) {
  EXPECT_EXIT(terminateAfterAFailure(), testing::ExitedWithCode(3), "^diags: out of memory\n$");
}

[[noreturn]] void terminateWithMemoryLeft() {
  std::set_terminate([] { std::_Exit(9); });
  watchMemory();
  watchMemory();
  std::terminate();
}

TEST(MemoryWatch, AnyOtherTerminationGoesItsOwnWay) {
  EXPECT_EXIT(terminateWithMemoryLeft(), testing::ExitedWithCode(9), "^$");
}

}  // namespace
}  // namespace host
