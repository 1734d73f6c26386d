#include <gtest/gtest.h>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/model/PathReference.h"

namespace cmpinsp {
namespace {

using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;

const ObjectPath kPath{"root/cimv2", "ACME_Fan", {{"Z", TCIMValue("1")}, {"A", TCIMValue("2")}}};

TEST(PathReference, KeepsThePathWithItsKeysInOrder) {
  EXPECT_EQ(pathOf(referenceTo(kPath, {})).keys, kPath.keys);
}

TEST(PathReference, AnswersAsAReferenceDoes) {
  const TCIMReference reference = referenceTo(kPath, {});
  EXPECT_EQ(reference.GetPath(), "root/cimv2:ACME_Fan.A=\"2\",Z=\"1\"");
  EXPECT_EQ(reference.GetNamespaceName(), "root/cimv2");
  EXPECT_EQ(reference.GetClassName(), "ACME_Fan");
  EXPECT_EQ(reference.GetKeys().at("Z"), TCIMValue("1"));
  EXPECT_FALSE(reference.GetNamespace());
}

TEST(PathReference, ReadsAnybodysReference) {
  const TCIMReference reference({}, "root", "A", {{"K", TCIMValue("v")}});
  const ObjectPath wanted{"root", "A", {{"K", TCIMValue("v")}}};
  EXPECT_EQ(pathOf(reference), wanted);
}

TEST(PathReference, WithoutAClassThePathIsRefused) {
  EXPECT_THROW(referenceTo(ObjectPath(), {}).GetPath(), NZELVOR20::TVORException);
}

TEST(PathReference, WithoutANamespaceTheClassIsRefused) {
  EXPECT_THROW(referenceTo(kPath, {}).GetClass(), NZELVOR20::TVORException);
}

}  // namespace
}  // namespace cmpinsp
