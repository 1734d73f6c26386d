#include <gtest/gtest.h>

#include <string>

#include "substitute/kfrxmlparser/InPlaceInput.h"
#include "tests/substitute/kfrxmlparser/RecordingParser.h"

namespace kfrxmlparser {
namespace {

TEST(InPlaceInput, TheDocumentIsTheParsersBufferAndIsLeftAsItWas) {
  std::string document = "<a x='1'>text &amp; more</a>";
  const std::string before = document;
  {
    InPlaceInput input(document.data(), document.size());
    XML_Parser parser = XML_ParserCreate_MM(nullptr, &InPlaceInput::memory(), nullptr);
    ASSERT_TRUE(input.lendTo(parser));
    EXPECT_EQ(XML_ParseBuffer(parser, static_cast<int>(document.size()), 1), XML_STATUS_OK);
    XML_ParserFree(parser);
  }
  EXPECT_EQ(document, before);
}

TEST(InPlaceInput, AParserOfItsOwnMayReadWithinANotification) {
  class Outer : public RecordingParser {
   protected:
    void Comment(const std::string&) override {
      RecordingParser inner;
      inner.parse("<i>" + std::string(5000, 'y') + "</i>");
      record += std::to_string(inner.record.size()) + "\n";
    }
  };
  Outer outer;
  outer.parse("<a><!--c-->x</a>");
  EXPECT_EQ(outer.record, "1 +a\n5015\n1 \"x\"\n1 -a\n");
}

TEST(InPlaceInput, ADocumentIsReadTheSameAfterOneThatBroke) {
  std::string document = "<a>" + std::string(5000, 'z');
  RecordingParser parser;
  parser.Parse(document.data());
  parser.Parse(document.data());
  EXPECT_EQ(document, "<a>" + std::string(5000, 'z'));
  const std::string once =
      "1 +a\n1 \"" + std::string(5000, 'z') + "\"\n1 error: no element found\n";
  EXPECT_EQ(parser.record, once + once);
}

}  // namespace
}  // namespace kfrxmlparser
