#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstring>
#include <new>

#include "substitute/cmpi.nsp/broker/lifetime/MemoryAccount.h"

namespace cmpinsp::broker {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kLimitsAreTheSanitizers = true;
#else
constexpr bool kLimitsAreTheSanitizers = false;
#endif

constexpr std::size_t kBeyondTheLimit = std::size_t{1} << 37U;

/// Limits the address space of this process as long as it lives.
class AddressSpaceLimit {
 public:
  AddressSpaceLimit() {
    getrlimit(RLIMIT_AS, &m_before);
    rlimit limit = m_before;
    limit.rlim_cur = kBeyondTheLimit;
    setrlimit(RLIMIT_AS, &limit);
  }
  ~AddressSpaceLimit() { setrlimit(RLIMIT_AS, &m_before); }
  AddressSpaceLimit(const AddressSpaceLimit&) = delete;
  AddressSpaceLimit& operator=(const AddressSpaceLimit&) = delete;

 private:
  rlimit m_before{};
};

// Catches an account that forgets a block which the system could not make larger.
TEST(MemoryAccount, WhatCannotGrowStaysAsItIs) {
  if (kLimitsAreTheSanitizers) GTEST_SKIP() << "a sanitizer takes the address space for itself";
  MemoryAccount account;
  void* block = account.allocate(5);
  std::memcpy(block, "kept", 5);
  {
    const AddressSpaceLimit limit;
    EXPECT_THROW(account.reallocate(block, kBeyondTheLimit), std::bad_alloc);
  }
  EXPECT_STREQ(static_cast<const char*>(block), "kept");
  block = account.reallocate(block, 100);
  EXPECT_STREQ(static_cast<const char*>(block), "kept");
  account.release(block);
}

TEST(MemoryAccount, WhatCannotBeMadeIsNotInIt) {
  if (kLimitsAreTheSanitizers) GTEST_SKIP() << "a sanitizer takes the address space for itself";
  MemoryAccount account;
  {
    const AddressSpaceLimit limit;
    EXPECT_THROW(account.allocate(kBeyondTheLimit), std::bad_alloc);
  }
  account.releaseAll();
}

}  // namespace
}  // namespace cmpinsp::broker
