#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

// The program as Slurm starts it, with scripts in the place of the two commands that it runs.
namespace slurm {
namespace {

namespace fs = std::filesystem;
using SteadyClock = std::chrono::steady_clock;

const char* const kStart =
    R"({"testId":1,"source":"engine","test":{"service":"T","device":"sda"}})";
const char* const kFailed = R"({"testId":1,"source":"engine","end":{"outcome":"failed"}})";
const char* const kPassed = R"({"testId":1,"source":"engine","end":{"outcome":"passed"}})";
const char* const kOver = R"({"source":"engine","end":{"outcome":"passed"}})";

struct Ended {
  int status = -1;  ///< the exit status; of one that a signal ended, -1
  std::chrono::milliseconds time{};
};

class SlurmCommand : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "slurm-command-XXXXXX").string();
    ASSERT_NE(::mkdtemp(name.data()), nullptr);
    m_folder = name;
    script("scontrol", "echo \"$@\" >>" + path("calls") +
                           "\n[ \"$2\" = show ] && echo 'NodeName=n1 State=IDLE Partitions=all'\n"
                           "exit 0\n");
  }
  void TearDown() override { fs::remove_all(m_folder); }

  std::string path(const std::string& name) const { return (m_folder / name).string(); }

  void script(const std::string& name, const std::string& text) const {
    std::ofstream(path(name)) << "#!/bin/sh\n" << text;
    ::chmod(path(name).c_str(), 0755);
  }

  /// A `diags` that has these events to tell, and then does something.
  void diags(const std::vector<std::string>& events, const std::string& then) const {
    std::string text = "echo $$ >>" + path("pids") + "\n";
    for (const std::string& event : events) text += "echo '" + event + "'\n";
    script("diags", text + then + "\n");
  }

  pid_t start(const std::string& verb, std::vector<std::string> options = {}) const {
    std::vector<std::string> arguments{
        DIAGS_SLURM,      verb,      "--diags",     path("diags"), "--scontrol",
        path("scontrol"), "--state", path("state"), "--node",      "n1",
        "--budget",       m_budget,  "--every",     m_every,       "--during-jobs"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const pid_t child = ::fork();
    if (child != 0) return child;
    const int said = ::open(path("said").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::dup2(said, 2);
    ::setenv("LD_LIBRARY_PATH", "/nowhere", 1);
    ::setenv("SLURM_CONF", "/slurm/own.conf", 1);
    std::vector<char*> pointers;
    for (std::string& one : arguments) pointers.push_back(one.data());
    pointers.push_back(nullptr);
    ::execv(pointers.front(), pointers.data());
    ::_exit(99);
  }

  static Ended end(pid_t child) {
    const SteadyClock::time_point begin = SteadyClock::now();
    int status = 0;
    ::waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            std::chrono::duration_cast<std::chrono::milliseconds>(SteadyClock::now() - begin)};
  }

  Ended run(const std::string& verb, const std::vector<std::string>& options = {}) const {
    return end(start(verb, options));
  }

  std::string content(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(path(name)).rdbuf();
    return text.str();
  }

  /// Whether it comes true within seconds.
  static bool comes(const std::function<bool()>& what) {
    const SteadyClock::time_point end = SteadyClock::now() + std::chrono::seconds(20);
    while (!what()) {
      if (SteadyClock::now() > end) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
  }

  std::vector<pid_t> started() const {
    std::istringstream lines(content("pids"));
    std::vector<pid_t> processes;
    for (pid_t one = 0; lines >> one;) processes.push_back(one);
    return processes;
  }

  /// One that has ended, but that nobody has asked about, is gone as well.
  static bool isGone(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string all((std::istreambuf_iterator<char>(file)), {});
    const std::size_t at = all.rfind(") ");
    return at == std::string::npos || all[at + 2] == 'Z';
  }

  bool allGone() const {
    for (const pid_t one : started())
      if (!isGone(one)) return false;
    return true;
  }

 protected:
  /// More than any script takes that comes to its end.
  std::string m_budget = "10m";
  std::string m_every = "0s";

 private:
  fs::path m_folder;
};

/// With some seconds less, a busy machine would not get as far as the hang.
constexpr const char* kBudget = "4s";
/// And it may take its time to let this process look.
constexpr std::chrono::milliseconds kMost{4500};

TEST_F(SlurmCommand, DrainsAFaultyNode) {
  diags({kStart, kFailed, kOver}, "exit 1");
  EXPECT_EQ(run("health").status, 1);
  EXPECT_EQ(content("calls"),
            "--oneliner show node n1\nupdate NodeName=n1 State=DRAIN Reason=sda: T failed\n");
}

TEST_F(SlurmCommand, LeavesASoundNodeAlone) {
  diags({kStart, kPassed, kOver}, "exit 0");
  EXPECT_EQ(run("prolog").status, 0);
  EXPECT_EQ(content("calls"), "");
}

TEST_F(SlurmCommand, EndsADiagsThatHangsWithAllOfItsGroup) {
  m_budget = kBudget;
  diags({kStart}, "trap '' TERM\nsleep 600 &\necho $! >>" + path("pids") + "\nwait");
  const Ended ended = run("health");
  EXPECT_EQ(ended.status, 3);
  EXPECT_LE(ended.time, kMost);
  EXPECT_EQ(started().size(), 2U);
  EXPECT_TRUE(comes([this] { return allGone(); }));
  EXPECT_EQ(content("calls"), "");
}

TEST_F(SlurmCommand, CountsAFaultThatWasFoundBeforeTheHang) {
  m_budget = kBudget;
  diags({kStart, kFailed}, "exec sleep 600");
  const Ended ended = run("prolog");
  EXPECT_EQ(ended.status, 1);
  EXPECT_LE(ended.time, kMost);
  EXPECT_NE(content("calls").find("State=DRAIN"), std::string::npos);
}

TEST_F(SlurmCommand, DoesNotWaitForAControllerThatHangs) {
  m_budget = kBudget;
  diags({kStart, kFailed, kOver}, "exit 1");
  script("scontrol", "echo $$ >>" + path("pids") + "\nexec sleep 600\n");
  const Ended ended = run("epilog");
  EXPECT_EQ(ended.status, 1);
  EXPECT_LE(ended.time, kMost);
  EXPECT_TRUE(comes([this] { return allGone(); }));
}

TEST_F(SlurmCommand, TriesAgainToDrainWhateverTheInterval) {
  m_every = "1h";
  diags({kStart, kFailed, kOver}, "exit 1");
  fs::rename(path("scontrol"), path("whole"));
  script("scontrol", "exit 1\n");
  EXPECT_EQ(run("health").status, 1);
  fs::rename(path("whole"), path("scontrol"));
  EXPECT_EQ(run("health").status, 1);
  EXPECT_NE(content("calls").find("State=DRAIN"), std::string::npos);
  EXPECT_EQ(run("health").status, 0);
  EXPECT_EQ(started().size(), 2U);
}

TEST_F(SlurmCommand, LeavesNoProcessAndDrainsNothingWhenItIsEnded) {
  diags({kStart, kFailed}, "exec sleep 600");
  for (const int signal : {SIGTERM, SIGKILL}) {
    fs::remove(path("pids"));
    const pid_t child = start("prolog");
    ASSERT_TRUE(comes([this] { return !started().empty(); }));
    ::kill(child, signal);
    EXPECT_EQ(end(child).status, signal == SIGTERM ? 0 : -1);
    EXPECT_TRUE(comes([this] { return allGone(); })) << signal;
  }
  EXPECT_EQ(content("calls"), "");
}

TEST_F(SlurmCommand, ReturnsAtOnceBesideAnotherOne) {
  diags({kStart}, "exec sleep 600");
  const pid_t first = start("health");
  ASSERT_TRUE(comes([this] { return !started().empty(); }));
  EXPECT_EQ(run("prolog").status, 0);
  EXPECT_EQ(started().size(), 1U);
  ::kill(first, SIGTERM);
  EXPECT_EQ(end(first).status, 3);
}

TEST_F(SlurmCommand, DoesNothingWithinTheInterval) {
  m_every = "1h";
  diags({kStart, kPassed, kOver}, "exit 0");
  EXPECT_EQ(run("health").status, 0);
  EXPECT_EQ(run("health").status, 0);
  EXPECT_EQ(started().size(), 1U);
  m_every = "0s";
  EXPECT_EQ(run("health").status, 0);
  EXPECT_EQ(started().size(), 2U);
}

TEST_F(SlurmCommand, GivesNothingOfItsEnvironmentOn) {
  diags({kStart, kPassed, kOver}, "env >" + path("environment"));
  EXPECT_EQ(run("health").status, 0);
  const std::string environment = content("environment");
  EXPECT_EQ(environment.find("LD_LIBRARY_PATH"), std::string::npos) << environment;
  EXPECT_EQ(environment.find("SLURM_CONF"), std::string::npos) << environment;
  EXPECT_NE(environment.find("PATH=/usr/sbin:/usr/bin:/sbin:/bin"), std::string::npos);
}

TEST_F(SlurmCommand, TellsScontrolWhichConfigurationItWasGiven) {
  diags({kStart, kFailed, kOver}, "exit 1");
  script("scontrol", "env >" + path("environment") + "\nexit 1\n");
  EXPECT_EQ(run("health").status, 1);
  EXPECT_NE(content("environment").find("SLURM_CONF=/slurm/own.conf"), std::string::npos);
}

TEST_F(SlurmCommand, StartsNothingThatOthersCouldWrite) {
  diags({kStart, kFailed, kOver}, "exit 1");
  ::chmod(path("diags").c_str(), 0777);
  EXPECT_EQ(run("health").status, 2);
  EXPECT_EQ(run("prolog").status, 0);
  EXPECT_TRUE(started().empty());
  EXPECT_NE(content("said").find(path("diags") + ": others can write it"), std::string::npos);
}

TEST_F(SlurmCommand, SurvivesADiagsThatTellsNonsense) {
  diags({"{", "[[[[", kStart},
        "head -c 9000000 /dev/zero; echo; echo '" + std::string(kFailed) + "'");
  EXPECT_EQ(run("health").status, 1);
}

TEST_F(SlurmCommand, SaysWhyANodeWasNotTested) {
  diags({}, "echo 'diags: there is no installation' >&2; exit 5");
  EXPECT_EQ(run("health").status, 3);
  EXPECT_NE(content("said").find("diags: there is no installation"), std::string::npos);
  EXPECT_EQ(content("calls"), "");
  EXPECT_EQ(run("health", {"--drain-unfinished"}).status, 1);
  EXPECT_NE(content("calls").find("Reason=could not be tested: diags ended with status 5"),
            std::string::npos);
}

}  // namespace
}  // namespace slurm
