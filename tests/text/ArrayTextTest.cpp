#include <gtest/gtest.h>

#include "text/ArrayText.h"

namespace text {
namespace {

using Texts = std::vector<std::string>;

TEST(ArrayText, GoesThereAndBack) {
  struct Row {
    Texts elements;
    const char* text;
  };
  for (const Row& row :
       {Row{{"3", "4"}, "3,4"}, Row{{"a,b", "c\\", ""}, "a\\,b,c\\\\,"}, Row{{"\\,"}, "\\\\\\,"},
        Row{{"", ""}, ","}, Row{{}, ""}, Row{{"one"}, "one"}}) {
    EXPECT_EQ(arrayText(row.elements), row.text);
    EXPECT_EQ(arrayElements(row.text), row.elements) << row.text;
  }
}

TEST(ArrayText, ABackslashBeforeAnythingElseIsOne) {
  EXPECT_EQ(arrayElements("C:\\temp,\\"), (Texts{"C:\\temp", "\\"}));
}

}  // namespace
}  // namespace text
