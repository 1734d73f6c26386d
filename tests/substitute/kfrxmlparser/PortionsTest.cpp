// A document that Expat copies, portion by portion, gives the same notifications.
#include <gtest/gtest.h>

#include <string>

#include "tests/substitute/kfrxmlparser/RecordingParser.h"

namespace kfrxmlparser {
namespace {

constexpr std::size_t kPortion = 256 * 1024;

std::string notificationsOf(const std::string& document) {
  RecordingParser parser;
  parser.parse(document);
  return parser.record;
}

/// `before`, and filling between it and what comes, so that `split` bytes of `after` end a portion.
std::string acrossPortions(const std::string& before, const std::string& after, std::size_t split) {
  return before + std::string(kPortion - before.size() - split, 'x') + after;
}

std::string fillOf(const std::string& document) {
  const std::size_t first = document.find('x');
  return document.substr(first, document.find_first_not_of('x', first) - first);
}

TEST(Portions, TextOfSeveralPortionsArrivesInOnePiece) {
  const std::string text(3 * kPortion, 'x');
  EXPECT_EQ(notificationsOf("<a>" + text + "</a>"), "1 +a\n1 \"" + text + "\"\n1 -a\n");
}

TEST(Portions, ADocumentMayEndWithAPortion) {
  const std::string document = acrossPortions("<a>", "</a>", 4);
  ASSERT_EQ(document.size(), kPortion);
  EXPECT_EQ(notificationsOf(document), "1 +a\n1 \"" + fillOf(document) + "\"\n1 -a\n");
}

TEST(Portions, ATagMayStandAcrossTwo) {
  for (std::size_t split = 0; split <= 8; ++split) {
    const std::string document = acrossPortions("<a>", "<b c='d'/></a>", split);
    EXPECT_EQ(notificationsOf(document),
              "1 +a\n1 \"" + fillOf(document) + "\"\n1 +b c=\"d\"\n1 -b\n1 -a\n")
        << split;
  }
}

TEST(Portions, ACharacterOfSeveralBytesMayStandAcrossTwo) {
  for (std::size_t split = 0; split <= 3; ++split) {
    const std::string document = acrossPortions("<a>", "\xE2\x82\xAC</a>", split);
    EXPECT_EQ(notificationsOf(document), "1 +a\n1 \"" + fillOf(document) + "\xE2\x82\xAC\"\n1 -a\n")
        << split;
  }
}

TEST(Portions, ALineEndOfTwoBytesAcrossTwoIsOne) {
  const std::string document = acrossPortions("<a>", "\r\n<b/></a>", 1);
  EXPECT_EQ(notificationsOf(document),
            "1 +a\n2 \"" + fillOf(document) + "\n\"\n2 +b\n2 -b\n2 -a\n");
}

TEST(Portions, AFaultInALaterOneIsReportedWithItsLineAfterWhatCameBefore) {
  const std::string document = acrossPortions("<a>", "\n<b/>\n</c>", 0);
  EXPECT_EQ(notificationsOf(document), "1 +a\n2 \"" + fillOf(document) +
                                           "\n\"\n2 +b\n2 -b\n3 \"\n\"\n3 error: mismatched tag\n");
}

}  // namespace
}  // namespace kfrxmlparser
