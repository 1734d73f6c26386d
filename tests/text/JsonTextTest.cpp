#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <vector>

#include "tests/text/HostileTexts.h"
#include "text/JsonText.h"
#include "text/SafeJson.h"
#include "text/SafeText.h"
#include "text/Utf8.h"

namespace text {
namespace {

std::string jsonOf(const std::string& text) {
  JsonText json;
  return json.object().add("t", text).endObject().text();
}

TEST(JsonText, SeparatesWhatStandsSideBySide) {
  JsonText json;
  json.object().add("a", std::uint64_t{5}).add("b", true).object("c").endObject().list("d");
  json.object().add("e", "x").endObject().object().endObject().endList().add("f", 0.1).endObject();
  EXPECT_EQ(json.text(), R"({"a":5,"b":true,"c":{},"d":[{"e":"x"},{}],"f":0.1})");
}

TEST(JsonText, LeavesOutWhatIsEmptyOnlyWhereAsked) {
  JsonText json;
  json.object().addIfAny("a", "").add("b", "").add("", "c").endObject();
  EXPECT_EQ(json.text(), R"({"b":"","":"c"})");
}

TEST(JsonText, NumbersThatJsonDoesNotHaveAreTexts) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  JsonText json;
  json.object().add("a", kInfinity).add("b", -kInfinity);
  json.add("c", std::numeric_limits<double>::quiet_NaN()).endObject();
  EXPECT_EQ(json.text(), R"({"a":"inf","b":"-inf","c":"nan"})");
}

TEST(JsonText, NumbersComeBackAsTheyWere) {
  for (const double number : {0.1, 1e300, -1.0 / 3, 5e-324, 40.0}) {
    JsonText json;
    json.object().add("n", number).endObject();
    EXPECT_EQ(nlohmann::json::parse(json.text())["n"].get<double>(), number);
  }
}

TEST(JsonText, WholeNumbersMayBeNegative) {
  JsonText json;
  json.object().add("a", std::numeric_limits<std::int64_t>::min());
  json.add("b", std::numeric_limits<std::uint64_t>::max()).endObject();
  EXPECT_EQ(json.text(), R"({"a":-9223372036854775808,"b":18446744073709551615})");
}

TEST(JsonText, ANumeralStandsAsItIsSpelt) {
  JsonText json;
  json.object().addNumeral("a", "40.0").list("b").addNumeral({}, "1e+20").endList().endObject();
  EXPECT_EQ(json.text(), R"({"a":40.0,"b":[1e+20]})");
}

TEST(JsonText, EscapesAsShortAsJsonHasThem) {
  EXPECT_EQ(jsonOf("\b\f\n\r\t\x0B\"\\/"), R"({"t":"\b\f\n\r\t\u000b\"\\/"})");
}

TEST(JsonText, HostileTextsComeBackAndActOnNoTerminal) {
  for (const HostileText& text : hostileTexts()) {
    const std::string json = jsonOf(text.text);
    EXPECT_EQ(nlohmann::json::parse(json)["t"].get<std::string>(), asUtf8(text.text)) << text.name;
    for (std::string_view rest = json; !rest.empty();) {
      const Character character = firstCharacter(rest);
      EXPECT_FALSE(character.code < 0x20 || actsUnseen(character.code)) << text.name;
      rest.remove_prefix(character.length);
    }
  }
}

/// What begins a character of two to four bytes or none, what goes on with one, at their bounds.
std::string allSequences(std::size_t length) {
  constexpr std::string_view kBytes =
      "a\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xED\xEF\xF0\xF1\xF4\xF5\xFF";
  std::vector<std::string> sequences{""};
  for (std::size_t i = 0; i < length; ++i) {
    std::vector<std::string> longer;
    for (const std::string& one : sequences) {
      for (const char byte : kBytes) longer.push_back(one + byte);
    }
    sequences = std::move(longer);
  }
  std::string all;
  for (const std::string& one : sequences) all += one + "-";
  return all;
}

TEST(JsonText, BytesThatAreNoneAreReplacedAsTheLibraryDoes) {
  for (const std::size_t length : {1U, 2U, 3U}) {
    const std::string text = allSequences(length);
    const nlohmann::json tree{{"t", text}};
    const auto replace = nlohmann::json::error_handler_t::replace;
    EXPECT_TRUE(jsonOf(text) == safeJson(tree.dump(-1, ' ', false, replace))) << length;
  }
}

TEST(JsonText, OtherWritingsStayReadable) {
  EXPECT_EQ(jsonOf("\xC3\xA4 \xE6\xB8\xAC\xE8\xA9\xA6 \xF0\x9F\x92\xA5"),
            "{\"t\":\"\xC3\xA4 \xE6\xB8\xAC\xE8\xA9\xA6 \xF0\x9F\x92\xA5\"}");
}

}  // namespace
}  // namespace text
