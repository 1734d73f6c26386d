#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/RatioReporter.h"
#include "substitute/cmpi.nsp/installation/InstallationRights.h"
#include "substitute/cmpi.nsp/registration/RegistrationTable.h"
#include "substitute/cmpi.nsp/repository/ClassBuilder.h"
#include "substitute/cmpi.nsp/repository/MofParser.h"

/// What reading an installation takes for each of many things of a kind, beside each of few: that a
/// new one is not compared with all those before it.
namespace {

using namespace cmpinsp;
using Problems = std::vector<substitute::Problem>;

constexpr std::size_t kTimes = 8;

/// `piece` with "#" for each number.
std::string repeated(const std::string& piece, std::size_t count, const char* between = "") {
  std::string text;
  for (std::size_t number = 0; number < count; ++number) {
    if (number > 0) text += between;
    for (const char c : piece) text += c == '#' ? std::to_string(number) : std::string(1, c);
  }
  return text;
}

void skip(benchmark::State& state, const char* what) { state.SkipWithError(what); }

void buildSchema(benchmark::State& state, const std::string& text) {
  for (auto iteration : state) {
    Problems problems;
    QualifierTable qualifiers;
    ClassTable classes;
    std::vector<CompilationUnit> units{parseMof("bench.mof", text, problems)};
    buildClasses(units, qualifiers, classes, problems);
    if (!problems.empty() || !classes.find("A")) return skip(state, "the schema has faults");
  }
}

void merge(benchmark::State& state, const std::vector<Registration>& registrations) {
  for (auto iteration : state) {
    Problems problems;
    const auto providers = mergeRegistrations(registrations, problems);
    if (providers.size() != 1) return skip(state, "all of it is one provider's");
  }
}

std::vector<Registration> classes(std::size_t count) {
  std::vector<Registration> all;
  for (std::size_t i = 0; i < count; ++i) {
    all.push_back({"A" + std::to_string(i), {"n"}, "P", "l", kInstanceInterface, {"f"}});
  }
  return all;
}

std::vector<Registration> namespaces(std::size_t count) {
  std::vector<Registration> all;
  for (std::size_t i = 0; i < count; ++i) {
    all.push_back({"A", {"root/n" + std::to_string(i)}, "P", "l", kInstanceInterface, {"f"}});
  }
  return all;
}

/// An installation with so many files that everybody may write.
std::string openInstallation(std::size_t count) {
  namespace fs = std::filesystem;
  const fs::path root = fs::temp_directory_path() / ("diags-bench-rights" + std::to_string(count));
  fs::remove_all(root);
  fs::create_directories(root / "schema");
  for (std::size_t i = 0; i < count; ++i) {
    const fs::path file = root / "schema" / (std::to_string(i) + ".mof");
    std::ofstream(file) << "\n";
    fs::permissions(file, fs::perms::others_write, fs::perm_options::add);
  }
  return root.string();
}

void examineRights(benchmark::State& state, const std::string& root, std::size_t count) {
  for (auto iteration : state) {
    if (findWhatOthersCanChange(root, {}).size() < count) return skip(state, "all are faults");
  }
}

struct Growth {
  std::vector<RatioGoal> goals;

  /// Benchmarks what `make` answers for few and for many. The caches of the processor hold few of
  /// them better, for which the goal leaves room; comparing each with all would be 8 times.
  template <typename Make>
  void add(const std::string& what, std::size_t few, Make make) {
    for (const std::size_t count : {few, few * kTimes}) {
      benchmark::RegisterBenchmark((std::to_string(count) + " " + what).c_str(), make(count))
          ->Unit(benchmark::kMillisecond);
    }
    goals.push_back({"time of each of " + std::to_string(few * kTimes) + " " + what + " / of " +
                         std::to_string(few),
                     std::to_string(few * kTimes) + " " + what, std::to_string(few) + " " + what,
                     kTimes, 3});
  }
  void addSchema(const std::string& what, const char* before, const char* piece,
                 const char* between, const char* after) {
    add(what, 5000, [=](std::size_t count) {
      const std::string text = before + repeated(piece, count, between) + after;
      return [text](benchmark::State& state) { buildSchema(state, text); };
    });
  }
};

}  // namespace

int main(int argc, char** argv) {
  Growth growth;
  growth.addSchema("properties of a class", "class A { ", "uint8 P#; ", "", "};");
  growth.addSchema("methods of a class", "class A { ", "uint8 M#(); ", "", "};");
  growth.addSchema("qualifiers of a class", "[", "Q#(1)", ", ", "] class A { };");
  growth.addSchema("qualifiers of a property", "class A { [", "Q#(1)", ", ", "] uint8 P; };");
  growth.addSchema("parameters of a method", "class A { uint8 M(", "uint8 P#", ", ", "); };");
  growth.addSchema("subclasses", "class A { };", "class B# : A { };", "", "");
  growth.add("overridden properties", 5000, [](std::size_t count) {
    const std::string text = "class A { " + repeated("uint8 P#; ", count) + "}; class B : A { " +
                             repeated("[Override(\"P#\")] uint8 P#; ", count) + "};";
    return [text](benchmark::State& state) { buildSchema(state, text); };
  });
  growth.add("overridden parameters", 5000, [](std::size_t count) {
    const std::string method = "uint8 M(" + repeated("uint8 P#", count, ", ") + "); };";
    const std::string text = "class A { " + method + " class B : A { " + method;
    return [text](benchmark::State& state) { buildSchema(state, text); };
  });
  growth.add("registered classes", 5000, [](std::size_t count) {
    return [all = classes(count)](benchmark::State& state) { merge(state, all); };
  });
  growth.add("namespaces of a registration", 5000, [](std::size_t count) {
    return [all = namespaces(count)](benchmark::State& state) { merge(state, all); };
  });
  growth.add("files that others may write", 500, [](std::size_t count) {
    return [root = openInstallation(count), count](benchmark::State& state) {
      examineRights(state, root, count);
    };
  });
  return runWithGoals(argc, argv, growth.goals);
}
