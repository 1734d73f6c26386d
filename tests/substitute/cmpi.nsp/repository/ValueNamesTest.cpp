#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "substitute/cmpi.nsp/repository/ValueNames.h"

namespace cmpinsp {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;
using vorcore::Qualifier;

/// Blank-separated words as a list of texts.
TCIMValue listOf(const std::string& words) {
  std::vector<TCIMValue> elements;
  std::istringstream stream(words);
  for (std::string word; stream >> word;) elements.emplace_back(word);
  return TCIMValue::Array(ECIMType::eString, elements);
}

/// A list of "-" stands for none.
std::vector<Qualifier> named(const std::string& map, const std::string& names, bool bits = false) {
  std::vector<Qualifier> qualifiers;
  if (map != "-") qualifiers.push_back({bits ? "BitMap" : "ValueMap", listOf(map)});
  if (names != "-") qualifiers.push_back({bits ? "BitValues" : "Values", listOf(names)});
  return qualifiers;
}

std::string textOf(const std::vector<Qualifier>& qualifiers) {
  std::string text;
  for (const Qualifier& qualifier : qualifiers) {
    text += qualifier.name + qualifier.value.ToString(10);
  }
  return text;
}

struct Row {
  const char* name;
  const char* map;
  const char* names;
  const char* otherMap;
  const char* otherNames;
  const char* wanted;  ///< empty: no change
};

const Row kRows[] = {
    {"the other has more", "1 2", "A B", "2 3", "X C", "ValueMap{1,2,3}Values{A,B,C}"},
    {"the other has the same values", "1 2", "A B", "2 1", "Y X", ""},
    {"none of its own", "-", "-", "1 2", "A B", "ValueMap{1,2}Values{A,B}"},
    {"values without names", "1 7", "-", "1 2", "A B", "ValueMap{1,2}Values{A,B}"},
    {"values without names, and names without values", "1 7", "-", "-", "A B", ""},
    {"names from 0 on in the other alone", "-", "-", "-", "A B", "Values{A,B}"},
    {"names from 0 on in both", "-", "A", "-", "A B", ""},
    {"names from 0 on here", "-", "A", "0 1", "A B", ""},
    {"none in the other", "1", "A", "2", "-", ""},
    {"more values than names", "1 2", "A", "3", "C", ""},
    {"more values than names in the other", "1", "A", "2 3", "C", ""},
};

TEST(ValueNames, AreCompletedByThoseOfAnotherVersion) {
  for (const Row& row : kRows) {
    std::vector<Qualifier> qualifiers = named(row.map, row.names);
    const std::string before = textOf(qualifiers);
    const std::string wanted = *row.wanted == '\0' ? before : row.wanted;
    EXPECT_EQ(completeNames(qualifiers, named(row.otherMap, row.otherNames)), wanted != before)
        << row.name;
    EXPECT_EQ(textOf(qualifiers), wanted) << row.name;
  }
}

TEST(ValueNames, AreThoseOfBitsToo) {
  std::vector<Qualifier> qualifiers = named("0", "Low", true);
  EXPECT_TRUE(completeNames(qualifiers, named("0 1", "X High", true)));
  EXPECT_EQ(textOf(qualifiers), "BitMap{0,1}BitValues{Low,High}");
}

}  // namespace
}  // namespace cmpinsp
