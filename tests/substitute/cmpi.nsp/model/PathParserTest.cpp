#include <gtest/gtest.h>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/model/ObjectPath.h"

namespace cmpinsp {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

struct GoodRow {
  const char* text;
  ObjectPath wanted;
};

std::vector<GoodRow> goodRows() {
  const auto integer = [](std::int64_t value) {
    return TCIMValue::Signed(ECIMType::eSint64, value);
  };
  return {
      {"root/cimv2:A", {"root/cimv2", "A", {}}},
      {"A", {"", "A", {}}},
      {"A.K=\"v\"", {"", "A", {{"K", TCIMValue("v")}}}},
      {"root:A.K=\"v\",L=5", {"root", "A", {{"K", TCIMValue("v")}, {"L", integer(5)}}}},
      {"root:A.K=-7", {"root", "A", {{"K", integer(-7)}}}},
      {"root:A.K=18446744073709551615",
       {"root", "A", {{"K", TCIMValue::Uint64(18446744073709551615U)}}}},
      {"root:A.K=-9223372036854775808", {"root", "A", {{"K", integer(INT64_MIN)}}}},
      {"root:A.K=TRUE", {"root", "A", {{"K", TCIMValue::Boolean(true)}}}},
      {"root:A.K=false", {"root", "A", {{"K", TCIMValue::Boolean(false)}}}},
      {"root:A.K='c'", {"root", "A", {{"K", TCIMValue::Char16('c')}}}},
      {"root:A.K=1.5", {"root", "A", {{"K", TCIMValue::Real(ECIMType::eReal64, 1.5)}}}},
      {"root:A.K=\"a\\\"b\\\\c,.=\"", {"root", "A", {{"K", TCIMValue("a\"b\\c,.=")}}}},
      {"root:A.K=\"root:B.L=\\\"x\\\"\"", {"root", "A", {{"K", TCIMValue("root:B.L=\"x\"")}}}},
      {"root:A=@", {"root", "A", {}}},
      {"/root/cimv2:A", {"root/cimv2", "A", {}}},
      {"//host/root/cimv2:A.K=1", {"root/cimv2", "A", {{"K", integer(1)}}}},
      {"//host:5989/root/cimv2:A", {"root/cimv2", "A", {}}},
      {"cim-xml+s://host/root/cimv2:A", {"root/cimv2", "A", {}}},
      {"https://me@host/root/cimv2:A", {"root/cimv2", "A", {}}},
      {R"(\\HOST\ROOT\CIMV2:A.K="a\\b")", {"ROOT/CIMV2", "A", {{"K", TCIMValue("a\\b")}}}},
      {R"(\\.\root\x:A)", {"root/x", "A", {}}},
      {R"(root\x:A.K="\"")", {"root/x", "A", {{"K", TCIMValue("\"")}}}},
      {"/:A", {"", "A", {}}},
      {"//h.domain.org:5989/root:A.K=\"x.y:z\"", {"root", "A", {{"K", TCIMValue("x.y:z")}}}},
      {"A.K=\"x://y:z\"", {"", "A", {{"K", TCIMValue("x://y:z")}}}},
      {"root:A.K=\"\"", {"root", "A", {{"K", TCIMValue("")}}}},
  };
}

TEST(PathParser, ReadsEveryForm) {
  for (const GoodRow& row : goodRows()) {
    const ObjectPath path = ObjectPath::parse(row.text);
    EXPECT_EQ(path.nameSpace, row.wanted.nameSpace) << row.text;
    EXPECT_EQ(path.className, row.wanted.className) << row.text;
    EXPECT_EQ(path.keys, row.wanted.keys) << row.text;
  }
}

struct BadRow {
  const char* text;
  const char* message;
};

constexpr BadRow kBadRows[] = {
    {"", "position 1: expected a class name"},
    {"//\"host/\\x:A.K=1", "position 3: expected a host name"},
    {"root:", "position 6: expected a class name"},
    {"root:A.", "position 8: expected a key name"},
    {"root:A.K", "position 9: expected '='"},
    {"root:A.K=", "position 10: expected a value"},
    {"root:A.K=word", "position 10: expected a value"},
    {"root:A.K=\"v", "position 12: expected \""},
    {"root:A.K=\"v\\", "position 13: expected \""},
    {"root:A.K=\"v\"x", "position 13: expected ',' or the end"},
    {"root:A.K=1,", "position 12: expected a key name"},
    {"root:A.K=1,k=2", "position 12: key k is there twice"},
    {"root:A.K='ab'", "position 10: expected one character"},
    {"root:A.K='\xED\xA0\x80'", "position 10: expected one character"},
    {"root:A B", "position 7: expected '.'"},
    {"root:A.K=99999999999999999999", "position 10: expected a value"},
    {"root:A.K=-9223372036854775809", "position 10: expected a value"},
    {"ht'tp://host/x\\\\y:A", "position 3: expected '.'"},
    {"ht_p://host/x:A", "position 6: expected a class name"},
    {"//host", "position 7: expected a class name"},
};

TEST(PathParser, NamesThePositionOfAFault) {
  for (const BadRow& row : kBadRows) {
    try {
      ObjectPath::parse(row.text);
      ADD_FAILURE() << row.text << " was read";
    } catch (const NZELVOR20::TVORException& failure) {
      EXPECT_EQ(failure.GetStatus().GetStatusCode(), NZELVOR20::eVORInvalidParameter);
      EXPECT_NE(std::string(failure.what()).find(row.message), std::string::npos)
          << row.text << ": " << failure.what();
    }
  }
}

TEST(PathParser, ReadsWhatToTextWrites) {
  ObjectPath path{"root/cimv2", "ACME_Fan", {}};
  path.setKey("Text", TCIMValue("tab\t, quote \", backslash \\, \xC3\xA4"));
  path.setKey("Count", TCIMValue::Uint64(7));
  path.setKey("On", TCIMValue::Boolean(true));
  path.setKey("Letter", TCIMValue::Char16('\''));
  path.setKey("Whole", TCIMValue::Real(ECIMType::eReal64, 3));
  path.setKey("Large", TCIMValue::Real(ECIMType::eReal64, -1e300));
  EXPECT_EQ(ObjectPath::parse(path.toText()), path);
}

}  // namespace
}  // namespace cmpinsp
