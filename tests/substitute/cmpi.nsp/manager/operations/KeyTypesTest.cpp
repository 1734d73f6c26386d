#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "substitute/cmpi.nsp/manager/operations/KeyTypes.h"
#include "substitute/cmpi.nsp/model/PathReference.h"

namespace cmpinsp {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

/// A class with a key of each sort.
vorcore::ClassDeclaration rack() {
  vorcore::ClassDeclaration declaration;
  declaration.name = "ACME_Rack";
  const std::pair<const char*, ECIMType> keys[] = {
      {"Row", ECIMType::eUint16}, {"Name", ECIMType::eString}, {"Owner", ECIMType::eReference}};
  for (const auto& key : keys) {
    vorcore::PropertyDeclaration property;
    property.name = key.first;
    property.type = key.second;
    property.isKey = true;
    declaration.properties.push_back(property);
  }
  return declaration;
}

struct Row {
  const char* what;
  const char* key;
  TCIMValue given;
  ECIMType type;  ///< that it has then
};

// A key that nobody declares stands before and behind each one.
TEST(KeyTypes, AreThoseThatTheClassDeclares) {
  const vorcore::ClassDeclaration declaration = rack();
  const Row rows[] = {
      {"a wide integer", "row", TCIMValue::Uint64(7), ECIMType::eUint16},
      {"digits", "Row", TCIMValue("7"), ECIMType::eUint16},
      {"an integer that is too large", "Row", TCIMValue::Uint64(70000), ECIMType::eUint64},
      {"a text", "Name", TCIMValue("left"), ECIMType::eString},
      {"a path", "Owner", TCIMValue("root/x:ACME_Owner.Id=\"7\""), ECIMType::eReference},
      {"what is no path", "Owner", TCIMValue("="), ECIMType::eString},
      {"what nobody declares", "Colour", TCIMValue::Uint64(7), ECIMType::eUint64},
  };
  for (const Row& row : rows) {
    const ObjectPath path{
        "root/x",
        "ACME_Rack",
        {{"Aisle", TCIMValue::Uint64(1)}, {row.key, row.given}, {"Zone", TCIMValue::Uint64(2)}}};
    const ObjectPath typed = withDeclaredKeyTypes(path, &declaration, {});
    ASSERT_EQ(typed.keys.size(), 3U) << row.what;
    EXPECT_EQ(typed.keys[1].first, row.key);
    EXPECT_EQ(typed.keys[1].second.GetType(), row.type) << row.what;
    EXPECT_EQ(typed.keys[2].second, TCIMValue::Uint64(2)) << row.what;
    EXPECT_TRUE(typed == path || row.type == ECIMType::eUint16) << row.what;
  }
}

TEST(KeyTypes, OfAClassThatNobodyDeclaredStayAsTheyAre) {
  const ObjectPath path{"root/x", "ACME_Rack", {{"Row", TCIMValue("7")}}};
  EXPECT_EQ(withDeclaredKeyTypes(path, nullptr, {}).keys[0].second, TCIMValue("7"));
}

// Catches keys behind one that does not convert.
TEST(KeyTypes, AKeyThatDoesNotConvertKeepsNoOtherBack) {
  const vorcore::ClassDeclaration declaration = rack();
  const ObjectPath path{
      "root/x", "ACME_Rack", {{"Row", TCIMValue("many")}, {"Name", TCIMValue::Char16(u'7')}}};
  const ObjectPath typed = withDeclaredKeyTypes(path, &declaration, {});
  EXPECT_EQ(typed.keys[0].second, TCIMValue("many"));
  EXPECT_EQ(typed.keys[1].second, TCIMValue("7"));
}

}  // namespace
}  // namespace cmpinsp
