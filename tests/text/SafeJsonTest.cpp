#include <gtest/gtest.h>

#include "text/SafeJson.h"

namespace text {
namespace {

struct Row {
  const char* name;
  const char* json;
  const char* safe;
};

class SafeJson : public testing::TestWithParam<Row> {};

TEST_P(SafeJson, HasNothingThatATerminalActsOn) {
  EXPECT_EQ(safeJson(GetParam().json), GetParam().safe);
}

const Row kRows[] = {
    {"Nothing", "", ""},
    {"Ascii",
     R"({"a":"b\n\u001b[2J",)"
     "\n  \"c\":1}",
     R"({"a":"b\n\u001b[2J",)"
     "\n  \"c\":1}"},
    {"Letters", R"(["Größe ✓ 😀"])", R"(["Größe ✓ 😀"])"},
    {"Delete", "[\"a\x7F\"]", R"(["a\u007f"])"},
    {"TheFirstOfTheSecondSet", "[\"\u0080x\"]", R"(["\u0080x"])"},
    {"TheSequenceIntroducer", "[\"\u009b2J\"]", R"(["\u009b2J"])"},
    {"Overrides", "[\"\u202a\u202e.\u2066\u2069\"]", R"(["\u202a\u202e.\u2066\u2069"])"},
    {"LineSeparators", "[\"\u2028\u2029\"]", R"(["\u2028\u2029"])"},
    {"Tags", "[\"\U000e0041\"]", R"(["\udb40\udc41"])"},
    {"AtTheEnd", "\u009b", R"(\u009b)"},
    {"BytesThatAreNone", "[\"\xFF\xC2\"]", "[\"\xFF\xC2\"]"},
};
INSTANTIATE_TEST_SUITE_P(All, SafeJson, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace text
