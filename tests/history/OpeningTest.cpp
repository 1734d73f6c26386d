#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <string>

#include "engine/events/Timestamp.h"
#include "history/store/Database.h"
#include "history/store/PutAside.h"
#include "history/store/RunLocks.h"
#include "history/store/Store.h"
#include "tests/history/HistoryFixture.h"

#if !defined(_WIN32)
#include <unistd.h>
#endif

namespace history {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class OpeningTest : public HistoryFixture {
 protected:
  void write(const std::string& content) {
    fs::create_directories(folder());
    std::ofstream(fileIn(folder()), std::ios::binary) << content;
  }
  /// Does this to the file of a history that has a run.
  void change(const std::string& sql) {
    {
      History history = open();
      recordRun(history);
    }
    Database database(fileIn(folder()), nullptr, std::chrono::seconds(1));
    database.run(sql);
  }
  /// The files whose names begin so.
  std::vector<fs::path> filesNamed(const std::string& start) const {
    std::vector<fs::path> found;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder())) {
      if (entry.path().filename().u8string().rfind(start, 0) == 0) found.push_back(entry.path());
    }
    return found;
  }
};

Options mending() {
  Options options;
  options.putsDamagedAside = true;
  return options;
}

TEST_F(OpeningTest, AnEmptyFileBecomesAHistory) {
  write("");
  EXPECT_EQ(complaint(), "");
}

#if !defined(_WIN32)
/// It would have the run of one user, root for instance, written to a place that another one chose.
TEST_F(OpeningTest, RefusesALinkThatAnotherUserHasMade) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can make one";
  fs::create_directories(folder());
  const fs::path target = folder() / "elsewhere";
  fs::create_symlink(target, fileIn(folder()));
  ASSERT_EQ(lchown(fileIn(folder()).c_str(), 65534, 65534), 0);
  EXPECT_THAT(complaint(), HasSubstr("history.db is a link that another user has made"));
  EXPECT_FALSE(fs::exists(target));
  ASSERT_EQ(lchown(fileIn(folder()).c_str(), 0, 0), 0);
  EXPECT_EQ(complaint(), "");
}
#endif

TEST_F(OpeningTest, RefusesWhatIsNoDatabaseByName) {
  write("These are notes, and no database at all.");
  EXPECT_THAT(complaint(), HasSubstr("history.db is no database"));
}

TEST_F(OpeningTest, PutsADamagedFileAsideSoThatRunsCanBeKept) {
  const std::string notes = "These are notes, and no database at all.";
  write(notes);
  {
    History history = open(mending());
    EXPECT_THAT(history.notice(), HasSubstr("history.db is no database; it is now "));
    recordRun(history);
  }
  EXPECT_EQ(complaint(), "");
  const std::vector<fs::path> aside = filesNamed("history.db.damaged-");
  ASSERT_EQ(aside.size(), 1U);
  std::ifstream stream(aside[0], std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), notes);
}

TEST_F(OpeningTest, TheLogOfADamagedFileGoesAsideWithIt) {
  write("damaged");
  std::ofstream(folder() / "history.db-wal", std::ios::binary) << "what was to be written";
  const fs::path aside = putAside(fileIn(folder()));
  EXPECT_EQ(filesNamed("history.db").size(), 2U);
  EXPECT_EQ(filesNamed(aside.filename().u8string()).size(), 2U);
}

TEST_F(OpeningTest, WhileAnotherProcessMendsItWaits) {
  write("These are notes, and no database at all.");
  Options options = mending();
  options.patience = std::chrono::milliseconds(50);
  RunLocks locks(lockFileIn(folder()));
  ASSERT_TRUE(locks.take(0));
  EXPECT_THAT(complaint(options), HasSubstr("another program does not let go of it"));
  locks.release(0);
  EXPECT_EQ(complaint(options), "");
}

TEST_F(OpeningTest, RefusesTheDatabaseOfAnotherProgramAndLeavesItAlone) {
  change("PRAGMA application_id = 5");
  EXPECT_THAT(complaint(mending()), HasSubstr("is a database of another program"));
  EXPECT_TRUE(filesNamed("history.db.damaged-").empty());
}

TEST_F(OpeningTest, RefusesTheDatabaseOfALaterVersionAndLeavesItAlone) {
  change("PRAGMA user_version = 2");
  EXPECT_THAT(complaint(mending()), HasSubstr("was written by a later version"));
  EXPECT_TRUE(filesNamed("history.db.damaged-").empty());
}

TEST_F(OpeningTest, RefusesTablesThatOnlyLookLikeItsOwn) {
  change("CREATE VIEW extra AS SELECT 1");
  EXPECT_THAT(complaint(), HasSubstr("its tables are not the history's"));
}

TEST_F(OpeningTest, NamesTheFileWhereAnEventIsNone) {
  change("UPDATE chunks SET lines = 'no event'");
  const History history = open();
  try {
    linesOf(history, history.resolve("last"));
    FAIL();
  } catch (const DamagedHistory& damage) {
    EXPECT_THAT(damage.what(), HasSubstr("history.db is damaged: of run 2026"));
  }
}

TEST_F(OpeningTest, NamesTheFileWhereAnOutcomeIsNone) {
  change("UPDATE runs SET outcome = 'splendid'");
  try {
    open().runs();
    FAIL();
  } catch (const DamagedHistory& damage) {
    EXPECT_THAT(damage.what(), HasSubstr("\"splendid\" is no outcome"));
  }
}

// Their difference, or their text, would be out of bounds.
TEST_F(OpeningTest, TimesBeyondTheCalendarAreItsEnds) {
  change("UPDATE runs SET started = -9223372036854775807, ended = 9223372036854775807");
  const std::vector<RunRecord> runs = open().runs();
  ASSERT_FALSE(runs.empty());
  EXPECT_EQ(engine::timestampOf(runs.front().started).substr(0, 19), "0001-01-01T00:00:00");
  EXPECT_EQ(engine::timestampOf(runs.front().ended.value()).substr(0, 19), "9999-12-31T23:59:59");
}

TEST_F(OpeningTest, RefusesAFileInThePlaceOfTheFolder) {
  std::ofstream(folder()) << "x";
  EXPECT_THAT(complaint(), HasSubstr("is no folder that runs can be kept in"));
}

TEST_F(OpeningTest, WorksInAFolderWithLettersOfAnyScript) {
  const fs::path strange = folder() / fs::u8path("Läufe – 履歴");
  History history = History::open(strange);
  recordRun(history);
  EXPECT_TRUE(fs::exists(strange / "history.db"));
}

#if !defined(_WIN32)

using OpeningPosixTest = OpeningTest;

TEST_F(OpeningPosixTest, WhatItMakesIsForItsOwnerAlone) {
  open();
  EXPECT_EQ(fs::status(folder()).permissions(), fs::perms::owner_all);
  for (const fs::path& file : filesNamed("history.")) {
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write)
        << file;
  }
}

/// A folder in which nobody but root makes a file.
constexpr auto kReadOnly = static_cast<fs::perms>(0555);

/// Root may write everywhere.
class AsNobody {
 public:
  AsNobody() : m_user(geteuid()) { static_cast<void>(m_user == 0 && seteuid(65534) == 0); }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;
  ~AsNobody() { static_cast<void>(m_user == 0 && seteuid(m_user) == 0); }

 private:
  uid_t m_user;
};

// Catches a history that cannot be read from a disk that is mounted to be read: SQLite wants files
// beside it.
TEST_F(OpeningPosixTest, ReadsWhatIsInAFolderThatMayOnlyBeRead) {
  {
    History history = open();
    recordRun(history);
  }
  for (const fs::path& file : filesNamed("history.")) {
    fs::permissions(file, fs::perms::group_read | fs::perms::others_read, fs::perm_options::add);
  }
  fs::permissions(folder(), kReadOnly);
  const AsNobody nobody;
  History history = open();
  EXPECT_EQ(history.runs().size(), 1U);
  EXPECT_THROW(Recorder recorder(history), HistoryError);
}

// Catches runs that are passed over in silence, since they are still in the log beside the file.
TEST_F(OpeningPosixTest, SaysWhyItCannotReadThereWhatWasCutOff) {
  write("");
  std::ofstream(folder() / "history.db-wal") << "changes";
  fs::permissions(folder(), kReadOnly);
  const AsNobody nobody;
  EXPECT_THAT(complaint(), HasSubstr("its last changes are still beside it"));
}

// Catches what is missing below being told for the reason: "No such file or directory".
TEST_F(OpeningPosixTest, OfAFolderThatCannotBeMadeItTellsWhichAndWhy) {
  fs::create_directories(folder());
  fs::permissions(folder(), kReadOnly);
  const fs::path first = folder() / "no";
  std::string text;
  {
    const AsNobody nobody;
    try {
      History::open(first / "such" / "folder");
    } catch (const HistoryError& error) {
      text = error.what();
    }
  }
  EXPECT_EQ(text, first.u8string() + " cannot be made: Permission denied");
}

#endif

}  // namespace
}  // namespace history
