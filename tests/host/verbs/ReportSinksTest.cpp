#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <utility>

#include "host/Messages.h"
#include "host/verbs/ReportSinks.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFormats[] = {"events", "ocp", "junit", "page", "metrics"};

class ReportSinksTest : public testing::Test {
 protected:
  ReportSinksTest() { fs::create_directory(m_folder); }
  ~ReportSinksTest() override { fs::remove_all(m_folder); }

  std::string file(const std::string& name) const { return (m_folder / name).u8string(); }
  std::string folder() const { return m_folder.u8string(); }

  static void put(const std::string& name, const std::string& text) {
    std::ofstream(fs::u8path(name), std::ios::binary) << text;
  }
  static std::string textOf(const std::string& name) {
    std::ifstream in(fs::u8path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  static bool isThere(const std::string& name) { return fs::exists(fs::u8path(name)); }

  ReportFiles everyFormat() const {
    return {file("events"), file("ocp"), file("junit"), file("page"), file("metrics")};
  }

 private:
  fs::path m_folder =
      fs::temp_directory_path() / ("diags reports " + std::to_string(std::random_device()()));
};

engine::Event eventOf(engine::Body body) {
  engine::Event event;
  event.body = std::move(body);
  return event;
}

// Catches a command that is refused after its files were opened: begun reports of nothing.
TEST_F(ReportSinksTest, WithoutAnEventNoFileIsLeft) {
  { const ReportSinks sinks(everyFormat(), false); }
  EXPECT_TRUE(fs::is_empty(fs::u8path(folder())));
}

TEST_F(ReportSinksTest, WithoutAnEventWhatWasThereStays) {
  for (const char* name : kFormats) put(file(name), "yesterday's");
  { const ReportSinks sinks(everyFormat(), true); }
  for (const char* name : kFormats) {
    EXPECT_EQ(textOf(file(name)), "yesterday's") << name;
  }
}

TEST_F(ReportSinksTest, WithTheFirstEventAFileIsTheReportsAlone) {
  for (const char* name : kFormats) put(file(name), "yesterday's");
  {
    ReportSinks sinks(everyFormat(), false);
    sinks.take(eventOf(engine::RunStarted()));
    sinks.take(eventOf(engine::Ended()));
    EXPECT_TRUE(sinks.finish().empty());
  }
  for (const char* name : kFormats) {
    const std::string text = textOf(file(name));
    EXPECT_NE(text, "") << name;
    EXPECT_EQ(text.find("yesterday's"), std::string::npos) << name;
  }
}

TEST_F(ReportSinksTest, APageOfNoEventsAtAllIsAFileOfItsOwn) {
  put(file("page"), "yesterday's");
  ReportSinks sinks({"", "", "", file("page")}, false);
  EXPECT_TRUE(sinks.finish().empty());
  EXPECT_EQ(textOf(file("page")).find("yesterday's"), std::string::npos);
}

// Catches an empty JUnit document, and streams without an end, of a run that a power cut ended.
TEST_F(ReportSinksTest, ARunThatBreaksOffIsClosedInEveryFormat) {
  ReportSinks sinks(everyFormat(), false);
  sinks.take(eventOf(engine::RunStarted()));
  engine::Event test = eventOf(engine::TestStarted());
  test.test = 1;
  sinks.take(test);
  EXPECT_TRUE(sinks.finish().empty());
  const std::string events = textOf(file("events"));
  EXPECT_EQ(std::count(events.begin(), events.end(), '\n'), 6);
  EXPECT_NE(textOf(file("ocp")).find("\"testRunEnd\""), std::string::npos);
  EXPECT_NE(textOf(file("junit")).find("errors=\"1\""), std::string::npos);
  EXPECT_NE(textOf(file("page")).find("The run did not end"), std::string::npos);
  EXPECT_NE(textOf(file("metrics")).find("diags_run_complete 0"), std::string::npos);
}

// Catches yesterday's metrics that are gone while today's tests run: somebody reads them each
// minute.
TEST_F(ReportSinksTest, MetricsStayAsTheyWereUntilTheRunEnds) {
  put(file("metrics"), "yesterday's");
  {
    ReportSinks sinks(everyFormat(), false);
    sinks.take(eventOf(engine::RunStarted()));
    EXPECT_EQ(textOf(file("metrics")), "yesterday's");
  }
  EXPECT_EQ(textOf(file("metrics")), "yesterday's");
}

// Catches files emptied or made before the one that is refused.
TEST_F(ReportSinksTest, OneThatCannotBeWrittenCostsTheOthersNothing) {
  put(file("events"), "yesterday's");
  EXPECT_THROW(ReportSinks({file("events"), file("ocp"), "", folder()}, false), UsageError);
  EXPECT_EQ(textOf(file("events")), "yesterday's");
  EXPECT_FALSE(isThere(file("ocp")));
}

TEST_F(ReportSinksTest, OneFileForTwoFormatsIsRefusedAndNotMade) {
  EXPECT_THROW(ReportSinks({file("both"), file("both"), "", ""}, false), UsageError);
  EXPECT_FALSE(isThere(file("both")));
}

TEST_F(ReportSinksTest, MetricsAreNotWrittenOverAnotherFormat) {
  EXPECT_THROW(ReportSinks({"", file("both"), "", "", file("both")}, false), UsageError);
  EXPECT_FALSE(isThere(file("both")));
}

}  // namespace
}  // namespace host
