#include <gtest/gtest.h>

#include <utility>

#include "substitute/cmpi.nsp/trust/LoaderCache.h"
#include "tests/substitute/cmpi.nsp/trust/ElfBuilder.h"

namespace cmpinsp {
namespace {

using Texts = std::vector<std::string>;
using Entries = std::vector<std::pair<std::string, std::string>>;

std::string number(std::uint64_t value) { return ElfBuilder::number(value, 4); }

/// A list in today's form.
std::string listOf(const Entries& entries) {
  std::string strings;
  std::string table;
  const std::size_t stringsAt = 48 + entries.size() * 24;
  for (const auto& [name, file] : entries) {
    table += number(0x303) + number(stringsAt + strings.size());
    strings += name + '\0';
    table += number(stringsAt + strings.size()) + number(0) + number(0) + number(0);
    strings += file + '\0';
  }
  return "glibc-ld.so.cache1.1" + number(entries.size()) + number(strings.size()) +
         std::string(20, '\0') + table + strings;
}

const Entries kEntries{{"libb.so.1", "/lib/v3/libb.so.1"},
                       {"libb.so.1", "/lib/libb.so.1"},
                       {"liba.so", "/lib/liba.so"}};

// Catches one that stops at the first, which the loader does not need to take.
TEST(LoaderCache, NamesEveryFileOfThatName) {
  const std::string content = listOf(kEntries);
  EXPECT_EQ(cachedFiles(content, "libb.so.1"), (Texts{"/lib/v3/libb.so.1", "/lib/libb.so.1"}));
  EXPECT_EQ(cachedFiles(content, "liba.so"), Texts{"/lib/liba.so"});
  EXPECT_EQ(cachedFiles(content, "libb.so"), Texts());
  EXPECT_EQ(cachedFiles(content, ""), Texts());
}

TEST(LoaderCache, IsFoundBehindOneInTheFormOfOld) {
  std::string old = std::string("ld.so-1.7.0\0", 12) + number(1) + std::string(12, 'o');
  old += std::string(4, '\0');  // up to the next multiple of eight
  EXPECT_EQ(cachedFiles(old + listOf(kEntries), "liba.so"), Texts{"/lib/liba.so"});
}

TEST(LoaderCache, CutOffAnywhereItHasWhatIsWhole) {
  const std::string content = listOf(kEntries);
  for (std::size_t length = 0; length < content.size(); ++length) {
    const Texts found = cachedFiles(content.substr(0, length), "liba.so");
    EXPECT_TRUE(found.empty()) << length;
  }
}

TEST(LoaderCache, OfAnUnknownFormHasNothing) {
  std::string content = listOf(kEntries);
  content.at(19) = '2';
  EXPECT_EQ(cachedFiles(content, "liba.so"), Texts());
}

}  // namespace
}  // namespace cmpinsp
