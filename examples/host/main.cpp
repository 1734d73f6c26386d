// A host: loads the runner when it needs it, lists this machine's tests, runs and reports some:
//   host RUNNER INSTALLATION [TEST...]
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "diagsrunner/DiagsRunner.h"
#include "substitute/cmpi.nsp/Bootstrap.h"

#if defined(_WIN32)
#include <windows.h>
#define main wmain  // its arguments are wide; the framework takes UTF-8 everywhere
#else
#include <dlfcn.h>
#endif

namespace {

namespace fs = std::filesystem;
using Namespace = boost::shared_ptr<NZELVOR20::ICIMNamespace>;

// The runner's operations, as gcc and clang write their names (MSVC has others): `nm -D` and the
// library's export list show them all. A member takes its object as the first argument.
#define STRING "NSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE"
#define NAMESPACE "N5boost10shared_ptrIN9NZELVOR2013ICIMNamespaceEEE"
constexpr char kGet[] = "_ZN11DiagsRunner14GetDiagsRunnerE" NAMESPACE;
constexpr char kFree[] = "_ZN11DiagsRunner15FreeDiagsRunnerEv";
constexpr char kList[] = "_ZN11DiagsRunner18EnumerateDiagTestsE" STRING;
constexpr char kRun[] = "_ZN11DiagsRunner7ExecuteE" STRING "S5_R" NAMESPACE;
constexpr char kReport[] = "_ZN11DiagsRunner15ExtendedResultsE" STRING "R" NAMESPACE;

/// The runner's library, which stays loaded. To find what lies beside it takes a whole path.
class Library {
 public:
#if defined(_WIN32)
  explicit Library(const fs::path& path) {
    std::wstring whole(32768, L'\0');  // gcc's fs::absolute() loses the machine of \\server\share
    GetFullPathNameW(path.c_str(), DWORD(whole.size()), whole.data(), nullptr);
    m_handle = LoadLibraryExW(whole.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  }
  void* address(const char* symbol) const {
    return reinterpret_cast<void*>(GetProcAddress(m_handle, symbol));
  }
  HMODULE m_handle;
#else
  explicit Library(const fs::path& path) : m_handle(dlopen(fs::absolute(path).c_str(), RTLD_NOW)) {}
  void* address(const char* symbol) const { return dlsym(m_handle, symbol); }
  void* m_handle;
#endif

  template <typename Function>
  Function* find(const char* symbol) const {
    if (m_handle == nullptr) throw std::runtime_error("the runner cannot be loaded");
    void* const found = address(symbol);
    if (found == nullptr) throw std::runtime_error(std::string("not in the runner: ") + symbol);
    return reinterpret_cast<Function*>(found);
  }
};

void useRunner(const Library& library, const substitute::Framework& framework,
               const std::vector<fs::path>& tests) {
  DiagsRunner* const runner =
      library.find<DiagsRunner*(Namespace)>(kGet)(framework.objectManager());
  const auto list = library.find<std::string(DiagsRunner*, std::string)>(kList);
  std::cout << "tests: " << list(runner, "") << std::endl;

  const auto run =
      library.find<std::string(DiagsRunner*, std::string, std::string, Namespace&)>(kRun);
  const auto report = library.find<std::string(DiagsRunner*, std::string, Namespace&)>(kReport);
  Namespace records = framework.makeReportNamespace();
  for (const fs::path& test : tests) {
    const std::string verdict = run(runner, test.u8string(), "", records);
    std::cout << "verdict: " << verdict << std::endl;
    std::cout << report(runner, test.u8string(), records) << std::endl;
  }
  library.find<void()>(kFree)();
}

}  // namespace

int main(int argc, fs::path::value_type** argv) {
  const std::vector<fs::path> arguments(argv, argv + argc);
  if (argc < 3) {
    std::cerr << "usage: host RUNNER INSTALLATION [TEST...]\n";
    return 2;
  }
  try {
    substitute::Installation installation;
    installation.root = arguments[2].u8string();
    const substitute::Framework framework(installation);
    useRunner(Library(arguments[1]), framework, {arguments.begin() + 3, arguments.end()});
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << "host: " << failure.what() << '\n';
    return 1;
  }
}
