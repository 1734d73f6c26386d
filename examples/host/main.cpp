// A host application. It loads the runner when it needs it, lists the tests of this machine, runs
// the ones that it is given, and reports them:
//
//   host RUNNER INSTALLATION [TEST...]
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

#include "diagsrunner/DiagsRunner.h"
#include "substitute/cmpi.nsp/Bootstrap.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

using Namespace = boost::shared_ptr<NZELVOR20::ICIMNamespace>;

// The runner's operations, as the compiler writes their names: `nm -D` and the export list of the
// library show them all. A member takes its object as the first argument.
#define STRING "NSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE"
#define NAMESPACE "N5boost10shared_ptrIN9NZELVOR2013ICIMNamespaceEEE"
constexpr char kGet[] = "_ZN11DiagsRunner14GetDiagsRunnerE" NAMESPACE;
constexpr char kFree[] = "_ZN11DiagsRunner15FreeDiagsRunnerEv";
constexpr char kList[] = "_ZN11DiagsRunner18EnumerateDiagTestsE" STRING;
constexpr char kRun[] = "_ZN11DiagsRunner7ExecuteE" STRING "S5_R" NAMESPACE;
constexpr char kReport[] = "_ZN11DiagsRunner15ExtendedResultsE" STRING "R" NAMESPACE;

/// The runner's library, which stays loaded until the process ends.
class Library {
 public:
#if defined(_WIN32)
  explicit Library(const char* path)
      : m_handle(LoadLibraryExA(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {}
  void* address(const char* symbol) const {
    return reinterpret_cast<void*>(GetProcAddress(m_handle, symbol));
  }
  HMODULE m_handle;
#else
  explicit Library(const char* path) : m_handle(dlopen(path, RTLD_NOW)) {}
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

void useRunner(const Library& library, const substitute::Framework& framework, char** tests) {
  DiagsRunner* const runner =
      library.find<DiagsRunner*(Namespace)>(kGet)(framework.objectManager());
  const std::string listing =
      library.find<std::string(DiagsRunner*, std::string)>(kList)(runner, "");
  std::cout << "tests: " << listing << std::endl;

  const auto run =
      library.find<std::string(DiagsRunner*, std::string, std::string, Namespace&)>(kRun);
  const auto report = library.find<std::string(DiagsRunner*, std::string, Namespace&)>(kReport);
  Namespace records = framework.makeReportNamespace();
  for (; *tests != nullptr; ++tests) {
    const std::string verdict = run(runner, *tests, "", records);
    std::cout << "verdict: " << verdict << std::endl;
    std::cout << report(runner, *tests, records) << std::endl;
  }
  library.find<void()>(kFree)();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: host RUNNER INSTALLATION [TEST...]\n";
    return 2;
  }
  try {
    substitute::Installation installation;
    installation.root = argv[2];
    const substitute::Framework framework(installation);
    useRunner(Library(argv[1]), framework, argv + 3);
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << "host: " << failure.what() << '\n';
    return 1;
  }
}
