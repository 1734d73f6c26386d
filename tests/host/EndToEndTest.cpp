// The command on the installation of this build: the real library, framework and providers, testing
// the machine that the tests run on. These cases take real seconds, so there are few.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <regex>
#include <string>
#include <vector>

#include "tests/host/CommandRunner.h"

namespace host_test {
namespace {

const std::string kRoot = DIAGS_INSTALLATION_DIR;

CommandResult diags(std::vector<std::string> arguments) {
  arguments.insert(arguments.end(), {"--root", kRoot});
  return runCommand(arguments);
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', start)) {
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

/// The identifier of the first test whose service name holds `part`; empty where there is none.
std::string testOf(const std::string& part) {
  for (const std::string& test : linesOf(diags({"list"}).out)) {
    if (test.substr(0, test.find(',')).find(part) != std::string::npos) return test;
  }
  return std::string();
}

bool hasLine(const std::string& text, const std::string& line) {
  const std::vector<std::string> lines = linesOf(text);
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

TEST(ThisMachine, OffersAMemoryAndAProcessorTest) {
  const CommandResult list = diags({"list"});
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(list.err, "");
  EXPECT_NE(testOf("Memory"), "");
  EXPECT_NE(testOf("Processor"), "");
}

TEST(ThisMachine, EveryIdentifierHasThreeFields) {
  for (const std::string& test : linesOf(diags({"list"}).out)) {
    EXPECT_GE(std::count(test.begin(), test.end(), ','), 2) << test;
  }
}

/// With the files, with a cache that may be there from before, and with one that surely is.
TEST(ThisMachine, TheCacheOfTheSchemaChangesNoAnswer) {
  const std::vector<std::vector<std::string>> commands{
      {"list"}, {"inspect", "DIAGS_MemoryTest"}, {"providers"}, {"check"}};
  for (std::vector<std::string> command : commands) {
    const CommandResult first = diags(command);
    const CommandResult warm = diags(command);
    command.push_back("--no-cache");
    const CommandResult plain = diags(command);
    EXPECT_EQ(plain.status, 0) << command.front();
    EXPECT_EQ(first.out, plain.out);
    EXPECT_EQ(warm.out, plain.out);
    EXPECT_EQ(warm.err, plain.err);
  }
}

TEST(ThisMachine, TheRawListingIsTheSameTests) {
  std::string joined;
  for (const std::string& test : linesOf(diags({"list"}).out)) joined += test + "|";
  EXPECT_EQ(diags({"list", "--raw"}).out, joined);
}

/// Of the memory, as much as is tried quickly with a sanitizer, too.
const char* const kLittleMemory = "NumberOfBytes=67108864";

TEST(ThisMachine, ItsMemoryPassesWithProgress) {
  const CommandResult run =
      diags({"run", "--level", "extended", "--set", kLittleMemory, testOf("Memory")});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_TRUE(hasLine(run.out, "Verdict: Pass")) << run.out;
  EXPECT_NE(run.out.find("\nPercent Complete"), std::string::npos) << run.out;
  EXPECT_NE(linesOf(run.out).back(), "Verdict: Pass") << "no record data\n" << run.out;
}

TEST(ThisMachine, ItsProcessorHasResultsAtEachLevel) {
  const CommandResult run = diags({"results", testOf("Processor")});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(hasLine(run.out, "Simple: (Pass)")) << run.out;
  EXPECT_TRUE(hasLine(run.out, "Immediate: Pass")) << run.out;
  EXPECT_TRUE(hasLine(run.out, "Extended:")) << run.out;
}

std::string fileText(const std::string& name) {
  std::ifstream file(name);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Runs the test of that name with a log of everything.
struct LoggedRun {
  explicit LoggedRun(const std::string& part, const std::vector<std::string>& options = {}) {
    const auto path = std::filesystem::temp_directory_path() /
                      ("diags-route-" + std::to_string(std::random_device()()) + ".log");
    const std::string file = path.string();
    std::vector<std::string> line{"run", "--level",     "extended", "--log",
                                  file,  "--log-level", "3",        testOf(part)};
    line.insert(line.end(), options.begin(), options.end());
    result = diags(line);
    log = fileText(file);
    std::filesystem::remove(path);
  }
  bool hasLogged(const std::string& text) const { return log.find(text) != std::string::npos; }

  CommandResult result;
  std::string log;
};

// The three ways in which a run's record is found, and what its vendor has to tell is put before
// it.
TEST(ThisMachine, TheRecordOfTheMemoryCheckIsFoundByItsDeviceAndExplainedLikeItsFamily) {
  const LoggedRun run("Memory Check:diag service");
  EXPECT_EQ(run.result.status, 0) << run.result.err;
  EXPECT_TRUE(run.hasLogged("matchDeviceID: \"mem0\""));
  EXPECT_FALSE(run.hasLogged("concreteJobID not found"));
  EXPECT_TRUE(run.hasLogged("update test name for :fusion-io:diag service"));
  EXPECT_TRUE(
      hasLine(run.result.out, "  DIAGS-SVC-0000 : The device passed its diagnostic service."))
      << run.result.out;
}

TEST(ThisMachine, TheRecordOfTheProcessorCheckIsFoundByItsJobAndExplainedUnderItsOwnName) {
  const LoggedRun run("Processor Check diag service");
  EXPECT_EQ(run.result.status, 0) << run.result.err;
  EXPECT_FALSE(run.hasLogged("matchDeviceID"));
  EXPECT_TRUE(run.hasLogged("testName :zel:processor check diag service"));
  EXPECT_TRUE(
      hasLine(run.result.out,
              "  DIAGS-CPC-0000 : Every processor thread that was checked computed the right "
              "results."))
      << run.result.out;
  EXPECT_TRUE(hasLine(run.result.out, "  1. No action is needed.")) << run.result.out;
}

TEST(ThisMachine, TheRecordOfAnotherTestIsFoundByItsJobAndStaysAsItIs) {
  const LoggedRun run("DIAGS: Memory Self Addressing", {"--set", kLittleMemory});
  EXPECT_EQ(run.result.status, 0) << run.result.err;
  EXPECT_FALSE(run.hasLogged("matchDeviceID"));
  EXPECT_FALSE(run.hasLogged("testName :"));
  EXPECT_EQ(run.result.out.find("DIAGS-MEM-"), std::string::npos) << run.result.out;
}

TEST(ThisMachine, AThreadedRunEndsWithTheVerdictOfTheFirstAndItsCoverage) {
  const CommandResult run =
      diags({"run", "--threaded", "0", "--set", kLittleMemory, testOf("Memory")});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const std::regex verdict(
      "Verdict: Pass - Tested [0-9.]+ [MG]iB of [0-9.]+ [MG]iB \\([0-9.]+ %\\).*");
  const auto lines = linesOf(run.out);
  EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&verdict](const std::string& line) {
    return std::regex_match(line, verdict);
  })) << run.out;
}

TEST(ThisMachine, ItsInstallationHasNoFaults) {
  const CommandResult check = diags({"check"});
  EXPECT_EQ(check.status, 0);
  EXPECT_EQ(check.out, "No faults found in " + kRoot + "\n");
}

TEST(ThisMachine, EveryProviderOfTheInstallationIsUsable) {
  const CommandResult providers = diags({"providers"});
  EXPECT_EQ(providers.status, 0) << providers.out;
  EXPECT_TRUE(hasLine(providers.out, "  state:      usable")) << providers.out;
}

// Catches "Verdict: Pass" above the exit status of a failure.
TEST(ThisMachine, AMeasurementOutsideOfItsLimitIsTheVerdictOfTheTest) {
  namespace fs = std::filesystem;
  const fs::path plan = fs::temp_directory_path() /
                        ("diags limit " + std::to_string(std::random_device()()) + ".toml");
  std::ofstream(plan) << "[[test]]\nname = \"DIAGS: Processor Status\"\n"
                         "limits.Threads = { minimum = 1e9 }\n";
  const CommandResult result =
      diags({"run", "--plan", plan.u8string(), "--no-history", "--junit", "-"});
  fs::remove(plan);
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("\nVerdict: Fail"), std::string::npos) << result.err;
  EXPECT_NE(result.out.find("<failure message=\"Fail"), std::string::npos) << result.out;
}

// Catches a product that is shown for each provider, whoever offers it.
TEST(ThisMachine, AProductIsShownOnceThoughThereAreTwoProviders) {
  namespace fs = std::filesystem;
  const fs::path root =
      fs::temp_directory_path() / ("diags product " + std::to_string(std::random_device()()));
  fs::copy(fs::u8path(kRoot), root, fs::copy_options::recursive);
  std::ofstream(root / "schema" / "product.mof")
      << "class ZELSG_VORProduct { [Key] string Name; };\n"
         "instance of ZELSG_VORProduct { Name = \"Fan Tests\"; };\n";
  const CommandResult shown =
      runCommand({"inspect", "ZELSG_VORProduct", "--root", root.u8string()});
  fs::remove_all(root);
  EXPECT_EQ(shown.err, "");
  EXPECT_EQ(shown.out,
            "TRunnerCollectClassInstances(root/cimv2:ZELSG_VORProduct.Name=\"Fan Tests\")\n"
            "Name : Fan Tests\n\n");
}

TEST(ThisMachine, TheInstallationBesideTheCommandIsFoundWithoutARoot) {
  EXPECT_EQ(runCommand({"list"}).out, diags({"list"}).out);
}

TEST(Command, GoesOnWithoutAProviderThatEndsTheProcess) {
  const std::string root = std::string(DIAGS_TEST_INSTALLATIONS) + "/leaving";
  const CommandResult inEnumeration = runCommand({"inspect", "TEST_Leaver", "--root", root});
  EXPECT_EQ(inEnumeration.status, 3);
  EXPECT_EQ(inEnumeration.err,
            "diags: provider Leaver is left out: it ended the process by itself, with status 7, in "
            "enumerateInstances\n");
  const CommandResult inFactory = runCommand({"inspect", "TEST_Founder", "--root", root});
  EXPECT_EQ(inFactory.status, 3);
  EXPECT_EQ(
      inFactory.err,
      "diags: provider Founder is left out: it ended the process by itself, with status 8, in "
      "create\n");
}

TEST(Command, AFullDiskIsNoSuccess) {
  const std::vector<std::string> commands[] = {
      {"list", "--root", kRoot}, {"--help"}, {"run", "--help"}, {"--version"}};
  for (const std::vector<std::string>& command : commands) {
    const CommandResult result = runCommand(command, "/dev/full");
    EXPECT_EQ(result.status, 3) << command.front();
    EXPECT_EQ(result.err, "diags: standard output cannot be written\n") << command.front();
  }
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define DIAGS_ADDRESS_SPACE_CANNOT_BE_LIMITED
#endif

// Catches a listing that is short, or empty, because memory ran out where its exception counted for
// an answer, or where a library could not be loaded.
#if !defined(_WIN32)
TEST(Command, WithoutItsWorkerSaysThatTheInstallationIsUnusable) {
  namespace fs = std::filesystem;
  const fs::path folder =
      fs::temp_directory_path() / ("diags-alone-" + std::to_string(std::random_device()()));
  fs::create_directories(folder);
  fs::copy_file(DIAGS_COMMAND, folder / "diags");
  const std::string inItsPlace =
      "alone() { shift; '" + (folder / "diags").string() + "' \"$@\"; }; alone ";
  const CommandResult list = runCommand({"list", "--root", kRoot}, "", inItsPlace);
  const CommandResult misspelt = runCommand({"list", "--rot", kRoot}, "", inItsPlace);
  fs::remove_all(folder);
  EXPECT_EQ(list.status, 5) << list.err;
  EXPECT_EQ(list.out, "");
  EXPECT_EQ(list.err.find("diags: the program that runs the tests is missing; looked for "), 0U)
      << list.err;
  EXPECT_EQ(misspelt.status, 2) << misspelt.err;
}
#endif

TEST(Command, WantOfMemoryIsNeverTakenForWantOfTests) {
#if defined(DIAGS_ADDRESS_SPACE_CANNOT_BE_LIMITED)
  GTEST_SKIP() << "a sanitizer takes the address space for itself";
#endif
  const std::string whole = diags({"list", "--no-cache"}).out;
  int shortages = 0;
  CommandResult list;
  for (int kib = 8192; kib < 65536 && list.out != whole; kib += 192) {
    const std::string limit = "ulimit -v " + std::to_string(kib) + "; ";
    list = runCommand({"list", "--no-cache", "--root", kRoot}, "", limit);
    const bool isRunning = list.err.compare(0, 7, "diags: ") == 0;
    // The loader ends a process with 127, not always with words of its own.
    const bool isWorking = list.err.find("with status 127") == std::string::npos &&
                           list.err.find("loading shared libraries") == std::string::npos;
    if (!isRunning || !isWorking) continue;  // they take memory before their first lines, too
    ++shortages;
    EXPECT_EQ(list.status, 3) << kib << '\n' << list.out << list.err;
    EXPECT_EQ(list.out, "") << kib;
    EXPECT_EQ(linesOf(list.err).back().compare(0, 20, "diags: out of memory"), 0) << kib << '\n'
                                                                                  << list.err;
  }
  EXPECT_EQ(list.out, whole);
  EXPECT_EQ(list.status, 0);
  EXPECT_GT(shortages, 0);
}

}  // namespace
}  // namespace host_test
