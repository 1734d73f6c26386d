// A host may include its system's header before ours, which must not change what ours declare.

#if defined(_WIN32)
#include <windows.h>
#endif

#include <gtest/gtest.h>

#include "framework/TCIMReference.h"

namespace NZELVOR20 {
namespace {

TEST(BehindTheSystemsHeader, AReferenceTellsItsClass) {
  EXPECT_EQ(TCIMReference(nullptr, "root/cimv2", "ACME_Fan", {}).GetClassName(), "ACME_Fan");
}

}  // namespace
}  // namespace NZELVOR20
