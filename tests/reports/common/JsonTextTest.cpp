#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "reports/common/JsonText.h"
#include "reports/common/Utf8.h"
#include "tests/reports/SampleRun.h"
#include "text/SafeText.h"

namespace reports {
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

TEST(JsonText, HostileTextsComeBackAndActOnNoTerminal) {
  for (const HostileText& text : hostileTexts()) {
    const std::string json = jsonOf(text.text);
    EXPECT_EQ(nlohmann::json::parse(json)["t"].get<std::string>(), asUtf8(text.text)) << text.name;
    for (std::string_view rest = json; !rest.empty();) {
      const Character character = firstCharacter(rest);
      EXPECT_FALSE(character.code < 0x20 || text::actsUnseen(character.code)) << text.name;
      rest.remove_prefix(character.length);
    }
  }
}

TEST(JsonText, OtherWritingsStayReadable) {
  EXPECT_EQ(jsonOf("\xC3\xA4 \xE6\xB8\xAC\xE8\xA9\xA6 \xF0\x9F\x92\xA5"),
            "{\"t\":\"\xC3\xA4 \xE6\xB8\xAC\xE8\xA9\xA6 \xF0\x9F\x92\xA5\"}");
}

}  // namespace
}  // namespace reports
