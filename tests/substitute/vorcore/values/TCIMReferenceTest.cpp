#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "framework/ICIMClass.h"
#include "framework/ICIMReferenceBody.h"
#include "framework/TCIMReference.h"
#include "substitute/vorcore/inmem/InmemNamespace.h"
#include "substitute/vorcore/values/PathText.h"
#include "tests/substitute/vorcore/Expectations.h"

namespace NZELVOR20 {
namespace {

using Keys = std::map<std::string, TCIMValue>;
using vorcore::failureOf;

const boost::shared_ptr<ICIMNamespace> kNoNamespace;

std::string pathOf(Keys keys) {
  return TCIMReference(kNoNamespace, "root/cimv2", "C", std::move(keys)).GetPath();
}

TEST(TCIMReference, KeysAreWrittenByTheirType) {
  const TCIMReference inner(kNoNamespace, "root/cimv2", "I", {{"Id", TCIMValue("a\"b")}});
  const std::vector<std::pair<Keys, const char*>> rows = {
      {{}, "root/cimv2:C"},
      {{{"Id", TCIMValue("x")}}, "root/cimv2:C.Id=\"x\""},
      {{{"Id", TCIMValue("")}}, "root/cimv2:C.Id=\"\""},
      {{{"Id", TCIMValue("C:\\dir \"x\"")}}, "root/cimv2:C.Id=\"C:\\\\dir \\\"x\\\"\""},
      {{{"Id", TCIMValue::Uint32(7)}}, "root/cimv2:C.Id=7"},
      {{{"Id", TCIMValue::Signed(ECIMType::eSint8, -7)}}, "root/cimv2:C.Id=-7"},
      {{{"Id", TCIMValue::Real(ECIMType::eReal64, 1.5)}}, "root/cimv2:C.Id=1.5"},
      {{{"Id", TCIMValue::Real(ECIMType::eReal64, -2)}}, "root/cimv2:C.Id=-2.0"},
      {{{"Id", TCIMValue::Real(ECIMType::eReal64, 1e300)}}, "root/cimv2:C.Id=1.0e+300"},
      {{{"Id", TCIMValue::Boolean(true)}}, "root/cimv2:C.Id=TRUE"},
      {{{"Id", TCIMValue::Boolean(false)}}, "root/cimv2:C.Id=FALSE"},
      {{{"Id", TCIMValue::DateTime("20240131120000.000000+060")}},
       "root/cimv2:C.Id=\"20240131120000.000000+060\""},
      {{{"Id", TCIMValue::Char16('"')}}, "root/cimv2:C.Id='\"'"},
      {{{"Id", TCIMValue::Char16('\'')}}, "root/cimv2:C.Id='\\''"},
      {{{"Id", TCIMValue::Null(ECIMType::eString)}}, "root/cimv2:C.Id=NULL"},
      {{{"Id", TCIMValue(inner)}}, "root/cimv2:C.Id=\"root/cimv2:I.Id=\\\"a\\\\\\\"b\\\"\""},
  };
  for (const auto& row : rows) EXPECT_EQ(pathOf(row.first), row.second);
}

TEST(TCIMReference, KeysAreInNameOrderWithoutCase) {
  EXPECT_EQ(pathOf({{"b", TCIMValue("2")}, {"A", TCIMValue("1")}, {"C", TCIMValue("3")}}),
            "root/cimv2:C.A=\"1\",b=\"2\",C=\"3\"");
}

TEST(TCIMReference, WithoutANamespaceNameThereIsNoColon) {
  EXPECT_EQ(TCIMReference(kNoNamespace, "", "C", {{"Id", TCIMValue("x")}}).GetPath(), "C.Id=\"x\"");
}

TEST(TCIMReference, OneThatNamesNoClassHasNoPathAndNoClass) {
  const TCIMReference empty(kNoNamespace, {});
  EXPECT_EQ(failureOf([&] { empty.GetPath(); }), "invalid parameter: the reference names no class");
  EXPECT_EQ(failureOf([&] { empty.GetClass(); }),
            "invalid parameter: the reference names no class");
  EXPECT_EQ(empty.GetClassName(), "");
  EXPECT_EQ(empty.GetNamespaceName(), "");
  EXPECT_TRUE(empty.GetKeys().empty());
  EXPECT_FALSE(empty.GetNamespace());
}

TEST(TCIMReference, KeepsTheNamespaceAndKeysItWasBuiltWith) {
  const boost::shared_ptr<ICIMNamespace> ns = TInmemNamespace::make("root/a");
  const TCIMReference reference(ns, {{"Id", TCIMValue("x")}});
  EXPECT_EQ(reference.GetNamespace(), ns);
  EXPECT_EQ(reference.GetKeys().at("Id").ToText(), "x");
}

TEST(TCIMReference, AnEmptyBodyGivesAnEmptyReference) {
  const TCIMReference reference{boost::shared_ptr<const ICIMReferenceBody>()};
  ASSERT_TRUE(reference.GetBody());
  EXPECT_EQ(reference.GetClassName(), "");
}

TEST(TCIMReference, OneThatWasMovedFromCanStillBeUsed) {
  TCIMReference source(kNoNamespace, "", "C", {});
  const TCIMReference target = std::move(source);
  EXPECT_EQ(target.GetPath(), "C");
  EXPECT_TRUE(source.GetBody());
}

TEST(TCIMReference, TheClassComesFromTheNamespace) {
  const auto ns = TInmemNamespace::make("root/a");
  const auto made = ns->AllocateClass("CIM_A", "", {});
  EXPECT_EQ(TCIMReference(ns, "root/a", "cim_a", {}).GetClass(), made);
  EXPECT_EQ(failureOf([&] { TCIMReference(ns, "root/a", "CIM_B", {}).GetClass(); }),
            "invalid class: class CIM_B");
}

TEST(TCIMReference, DoesNotKeepItsNamespaceAlive) {
  auto ns = TInmemNamespace::make("root/a");
  const TCIMReference reference(ns, "root/a", "CIM_A", {});
  ns.reset();
  EXPECT_FALSE(reference.GetNamespace());
  EXPECT_EQ(reference.GetPath(), "root/a:CIM_A");
  EXPECT_EQ(failureOf([&] { reference.GetClass(); }),
            "invalid namespace: the namespace of root/a:CIM_A is gone");
}

}  // namespace
}  // namespace NZELVOR20
