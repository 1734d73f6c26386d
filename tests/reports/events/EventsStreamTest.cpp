#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

#include "engine/events/EventLine.h"
#include "reports/events/EventsReader.h"
#include "reports/events/EventsWriter.h"
#include "tests/reports/SampleRun.h"

namespace reports {
namespace {

std::string linesOf(const std::vector<engine::Event>& events) {
  std::string lines;
  for (const engine::Event& event : events) lines += engine::lineOf(event) + "\n";
  return lines;
}

TEST(EventsWriter, WritesALineForEachEvent) {
  EXPECT_EQ(written<EventsWriter>(sampleRun()), linesOf(sampleRun()));
}

TEST(EventsWriter, HostileTextsStayWithinTheirLines) {
  for (const HostileText& text : hostileTexts()) {
    std::istringstream in(written<EventsWriter>(runOf(text.text)));
    EventsReader reader(in, "f");
    std::size_t count = 0;
    while (reader.next()) ++count;
    EXPECT_EQ(count, runOf(text.text).size()) << text.name;
  }
}

TEST(EventsReader, ReadsUpToTheLastWholeLineWhereverAStreamIsCut) {
  const std::string whole = linesOf(shortRun());
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const std::string cut = whole.substr(0, size);
    std::istringstream in(cut);
    EventsReader reader(in, "f");
    std::string read;
    while (const auto event = reader.next()) read += engine::lineOf(*event) + "\n";
    ASSERT_EQ(read, cut.substr(0, cut.rfind('\n') + 1));
    ASSERT_EQ(reader.wasCut(), read.size() != cut.size());
  }
}

TEST(EventsReader, NamesFileAndLineOfWhatIsNoEventAndGoesOnBehindIt) {
  const std::string whole = linesOf(sampleRun());
  std::istringstream in(whole.substr(0, whole.find('\n') + 1) + "{\"a\x1b\":\n" + whole);
  EventsReader reader(in, "the file");
  EXPECT_TRUE(reader.next());
  try {
    reader.next();
    FAIL() << "it was taken";
  } catch (const std::runtime_error& fault) {
    const std::string text = fault.what();
    EXPECT_EQ(text.substr(0, 38), "the file, line 2: the line is no JSON:");
    EXPECT_EQ(text.find('\x1b'), std::string::npos);
  }
  EXPECT_TRUE(reader.next());
}

}  // namespace
}  // namespace reports
