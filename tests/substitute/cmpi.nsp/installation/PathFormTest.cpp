#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/installation/PathForm.h"

namespace cmpinsp {
namespace {

namespace fs = std::filesystem;

// Catches an exception that ends everything for one stray file in the schema's folder.
TEST(PathForm, ThePathAsTextIsUtf8OrEmpty) {
  EXPECT_EQ(textOf(fs::u8path("Gr\xC3\xB6\xC3\x9F"
                              "e.mof")),
            "Gr\xC3\xB6\xC3\x9F"
            "e.mof");
#if defined(_WIN32)
  const fs::path stray(L"\xD800.mof");
  EXPECT_EQ(textOf(stray), "");
  EXPECT_EQ(textOf(stray.extension()), ".mof");
#endif
}

}  // namespace
}  // namespace cmpinsp
