#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

#include "framework/TVORException.h"
#include "framework/TXmlParser.h"
#include "tests/substitute/kfrxmlparser/RecordingParser.h"

namespace kfrxmlparser {
namespace {

using namespace std::string_literals;

std::string notificationsOf(const std::string& document) {
  RecordingParser parser;
  parser.parse(document);
  return parser.record;
}

struct Row {
  const char* name;
  std::string document;
  std::string wanted;
};

void expectRows(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(notificationsOf(row.document), row.wanted) << row.name;
  }
}

TEST(TXmlParser, WellFormedDocumentsNotifyInTheirOrder) {
  expectRows({
      {"an empty element", "<a/>", "1 +a\n1 -a\n"},
      {"attributes in name order", "<a z='1' b=\"2\"/>", "1 +a b=\"2\" z=\"1\"\n1 -a\n"},
      {"attributes of the element before are gone", "<a x='1'><b/></a>",
       "1 +a x=\"1\"\n1 +b\n1 -b\n1 -a\n"},
      {"names keep their case", "<Aa Bb=''/>", "1 +Aa Bb=\"\"\n1 -Aa\n"},
      {"text in one piece over line ends", "<a>one\ntwo\nthree</a>",
       "1 +a\n3 \"one\ntwo\nthree\"\n3 -a\n"},
      {"CRLF is one line end", "<a>one\r\ntwo</a>", "1 +a\n2 \"one\ntwo\"\n2 -a\n"},
      {"references resolved in the piece", "<a>x &lt; y &amp; &#65;&#x42;</a>",
       "1 +a\n1 \"x < y & AB\"\n1 -a\n"},
      {"a CDATA section is part of the piece", "<a>x<![CDATA[<b>&amp;]]>y</a>",
       "1 +a\n1 \"x<b>&amp;y\"\n1 -a\n"},
      {"a comment does not divide the piece", "<a>x<!--c-->y</a>", "1 +a\n1 !c\n1 \"xy\"\n1 -a\n"},
      {"an instruction does not divide it either", "<a>x<?t d?>y</a>",
       "1 +a\n1 ?t d\n1 \"xy\"\n1 -a\n"},
      {"a tag divides it", "<a>x<b/>y</a>", "1 +a\n1 \"x\"\n1 +b\n1 -b\n1 \"y\"\n1 -a\n"},
      {"white space is text", "<a>\n <b/></a>", "1 +a\n2 \"\n \"\n2 +b\n2 -b\n2 -a\n"},
      {"the prolog", "<?xml version='1.0'?>\n<!--c-->\n<?t d?>\n<a/>\n",
       "2 !c\n3 ?t d\n4 +a\n4 -a\n"},
      {"a byte-order mark", "\xEF\xBB\xBF<a/>", "1 +a\n1 -a\n"},
      {"an internal entity", "<!DOCTYPE a [<!ENTITY e 'text'>]><a>&e;</a>",
       "1 +a\n1 \"text\"\n1 -a\n"},
      {"a defaulted attribute", "<!DOCTYPE a [<!ATTLIST a x CDATA 'd'>]><a/>",
       "1 +a x=\"d\"\n1 -a\n"},
      {"an external entity is left out",
       "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><a>x&e;y</a>",
       "1 +a\n1 \"xy\"\n1 -a\n"},
      {"what follows the first zero byte is not read", "<a/>\0<b>"s, "1 +a\n1 -a\n"},
  });
}

TEST(TXmlParser, WhatIsNotWellFormedIsReportedOnceAfterWhatCameBefore) {
  expectRows({
      {"a wrong end tag", "<a>\n<b>x</a>",
       "1 +a\n2 \"\n\"\n2 +b\n2 \"x\"\n2 error: mismatched tag\n"},
      {"an end that is missing", "<a>\ntext", "1 +a\n2 \"\ntext\"\n2 error: no element found\n"},
      {"cut off within a tag", "<a>\n<b x='1", "1 +a\n2 \"\n\"\n2 error: unclosed token\n"},
      {"zero bytes in the middle", "<a>x\0\0\0</a>"s, "1 +a\n1 \"x\"\n1 error: no element found\n"},
      {"text alone", "hello", "1 error: syntax error\n"},
      {"blanks alone", " \n ", "2 error: no element found\n"},
      {"two roots", "<a/>\n<b/>", "1 +a\n1 -a\n2 error: junk after document element\n"},
      {"a bare ampersand", "<a>x & y</a>",
       "1 +a\n1 \"x \"\n1 error: not well-formed (invalid token)\n"},
      {"an unknown entity", "<a>x&nope;</a>", "1 +a\n1 \"x\"\n1 error: undefined entity\n"},
      {"an attribute twice", "<a x='1' x='2'/>", "1 error: duplicate attribute\n"},
      {"no quotes", "<a x=1/>", "1 error: not well-formed (invalid token)\n"},
      {"bytes that are not UTF-8", "<a>\xE9</a>",
       "1 +a\n1 error: not well-formed (invalid token)\n"},
      {"an encoding nobody knows", "<?xml version='1.0' encoding='ebcdic'?><a/>",
       "1 error: unknown encoding\n"},
      {"an entity that contains itself", "<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>",
       "1 +a\n1 error: recursive entity reference\n"},
  });
}

TEST(TXmlParser, SingleByteEncodingsAreRead) {
  const std::string body = "<a>\x80\xA4\xE9</a>";
  const auto declared = [&](const std::string& encoding) {
    return "<?xml version='1.0' encoding='" + encoding + "'?>" + body;
  };
  expectRows({
      {"windows-1252", declared("Windows-1252"), "1 +a\n1 \"\u20AC\u00A4\u00E9\"\n1 -a\n"},
      {"iso-8859-15", declared("ISO-8859-15"), "1 +a\n1 \"\u0080\u20AC\u00E9\"\n1 -a\n"},
      {"iso-8859-1", declared("iso-8859-1"), "1 +a\n1 \"\u0080\u00A4\u00E9\"\n1 -a\n"},
      {"a byte without a character", "<?xml version='1.0' encoding='cp1252'?><a>\x81</a>",
       "1 +a\n1 error: not well-formed (invalid token)\n"},
  });
}

TEST(TXmlParser, NothingIsNotifiedForAnEmptyBuffer) {
  RecordingParser parser;
  parser.parse("");
  parser.parse("\0<a/>"s);
  parser.Parse(nullptr);
  EXPECT_EQ(parser.record, "");
}

TEST(TXmlParser, TheLineIsZeroBeforeAnythingIsParsedAndStaysAtTheEndAfterwards) {
  RecordingParser parser;
  EXPECT_EQ(parser.GetCurLine(), 0U);
  parser.parse("<a>\n\n</a>");
  EXPECT_EQ(parser.GetCurLine(), 3U);
}

TEST(TXmlParser, AParserReadsOneDocumentAfterTheOther) {
  RecordingParser parser;
  parser.parse("<a>left over");
  parser.record.clear();
  parser.parse("<b/>");
  EXPECT_EQ(parser.record, "1 +b\n1 -b\n");
}

TEST(TXmlParser, TextLongerThanOnePortionArrivesInOnePiece) {
  const std::string text(700 * 1024, 'x');
  EXPECT_EQ(notificationsOf("<a>" + text + "</a>"), "1 +a\n1 \"" + text + "\"\n1 -a\n");
}

TEST(TXmlParser, ATagMayStandAcrossTwoPortions) {
  const std::string value(300 * 1024, 'v');
  EXPECT_EQ(notificationsOf("<a x='" + value + "'/>"), "1 +a x=\"" + value + "\"\n1 -a\n");
}

std::string laughs(int depth) {
  std::string document = "<!DOCTYPE a [<!ENTITY e0 'ha'>";
  for (int level = 1; level <= depth; ++level) {
    const std::string inner = "&e" + std::to_string(level - 1) + ";";
    document += "<!ENTITY e" + std::to_string(level) + " '";
    for (int copy = 0; copy < 10; ++copy) document += inner;
    document += "'>";
  }
  return document + "]><a>&e" + std::to_string(depth) + ";</a>";
}

TEST(TXmlParser, SmallExpansionsAreAllowedWhateverTheirFactor) {
  std::string wanted = "1 +a\n1 \"";
  for (int copy = 0; copy < 100; ++copy) wanted += "ha";
  EXPECT_EQ(notificationsOf(laughs(2)), wanted + "\"\n1 -a\n");
}

TEST(TXmlParser, ExpansionBeyondTheBoundIsAnError) {
  const std::string record = notificationsOf(laughs(9));
  EXPECT_NE(record.find("error: limit on input amplification factor"), std::string::npos);
  EXPECT_LT(record.size(), 1024U * 1024U);
}

class ThrowingParser : public RecordingParser {
 public:
  explicit ThrowingParser(std::string where) : m_where(std::move(where)) {}

 protected:
  void StartElement(const std::string& name,
                    const std::map<std::string, std::string>& attributes) override {
    RecordingParser::StartElement(name, attributes);
    throwAt("start");
  }
  void EndElement(const std::string& name) override {
    RecordingParser::EndElement(name);
    throwAt("end");
  }
  void CharacterData(const std::string& text) override {
    RecordingParser::CharacterData(text);
    throwAt("text");
  }
  void Comment(const std::string& text) override {
    RecordingParser::Comment(text);
    throwAt("comment");
  }
  void ProcessingInstruction(const std::string& target, const std::string& data) override {
    RecordingParser::ProcessingInstruction(target, data);
    throwAt("instruction");
  }
  void Error(const std::string& message) override {
    RecordingParser::Error(message);
    throwAt("error");
  }

 private:
  void throwAt(const std::string& place) {
    if (place == m_where) throw std::runtime_error("thrown at " + place);
  }

  std::string m_where;
};

TEST(TXmlParser, WhatANotificationThrowsReachesTheCallerAndEndsTheParsing) {
  const std::vector<std::pair<const char*, const char*>> rows = {
      {"start", "1 +a\n"},
      {"comment", "1 +a\n1 !c\n"},
      {"instruction", "1 +a\n1 !c\n1 ?t d\n"},
      {"text", "1 +a\n1 !c\n1 ?t d\n1 \"x\"\n"},
      {"end", "1 +a\n1 !c\n1 ?t d\n1 \"x\"\n1 +b\n1 -b\n"},
      {"error", "1 +a\n1 !c\n1 ?t d\n1 \"x\"\n1 +b\n1 -b\n1 error: mismatched tag\n"},
  };
  for (const auto& row : rows) {
    ThrowingParser parser(row.first);
    try {
      parser.parse("<a><!--c--><?t d?>x<b/></c>");
      ADD_FAILURE() << "nothing thrown at " << row.first;
    } catch (const std::runtime_error& exception) {
      EXPECT_EQ(exception.what(), std::string("thrown at ") + row.first);
    }
    EXPECT_EQ(parser.record, row.second) << row.first;
  }
}

TEST(TXmlParser, AParserIsOfUseAfterANotificationThrew) {
  ThrowingParser parser("comment");
  EXPECT_THROW(parser.parse("<a>text<!--c--></a>"), std::runtime_error);
  parser.record.clear();
  parser.parse("<b/>");
  EXPECT_EQ(parser.record, "1 +b\n1 -b\n");
}

class ReentrantParser : public RecordingParser {
 protected:
  void StartElement(const std::string&, const std::map<std::string, std::string>&) override {
    parse("<inner/>");
  }
};

TEST(TXmlParser, ASecondDocumentCannotBeginWithinTheFirst) {
  ReentrantParser parser;
  EXPECT_THROW(parser.parse("<a/>"), NZELVOR20::TVORException);
}

TEST(TXmlParser, ScriptSectionsAreNotSupported) {
  RecordingParser parser;
  char buffer[] = "<a/>";
  try {
    parser.ParseJSSP(buffer);
    ADD_FAILURE();
  } catch (const NZELVOR20::TVORException& exception) {
    EXPECT_EQ(exception.GetStatus().GetStatusCode(), NZELVOR20::eVORNotSupported);
  }
}

TEST(TXmlParser, AnAttributeIsLookedUpByItsExactName) {
  RecordingParser parser;
  std::string value = "before";
  EXPECT_FALSE(parser.GetAttributeNValue({{"name", "n"}}, "Name", value));
  EXPECT_EQ(value, "before");
  EXPECT_TRUE(parser.GetAttributeNValue({{"name", "n"}}, "name", value));
  EXPECT_EQ(value, "n");
}

class RawTextParser : public RecordingParser {
 protected:
  void ParseCharData(const char* data, int length) override {
    record += "raw " + std::string(data, static_cast<std::size_t>(length)) + "\n";
  }
};

TEST(TXmlParser, ADerivedParserCanTakeTheRunsOfCharacterDataItself) {
  RawTextParser parser;
  parser.parse("<a>x</a>");
  EXPECT_EQ(parser.record, "1 +a\nraw x\n1 -a\n");
}

TEST(TXmlParser, TwoThreadsParseWithAParserEach) {
  const auto parseOften = [] {
    for (int round = 0; round < 200; ++round) {
      ASSERT_EQ(notificationsOf("<a x='1'>t</a>"), "1 +a x=\"1\"\n1 \"t\"\n1 -a\n");
    }
  };
  std::thread other(parseOften);
  parseOften();
  other.join();
}

}  // namespace
}  // namespace kfrxmlparser
