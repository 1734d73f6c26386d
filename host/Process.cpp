#include "host/Process.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#if defined(_WIN32)
#include <windows.h>
// shellapi.h needs windows.h before it.
#include <shellapi.h>
#else
#include <unistd.h>

#include <array>
#endif

namespace host {

#if defined(_WIN32)

namespace {

std::string toUtf8(const wchar_t* text) { return std::filesystem::path(text).u8string(); }

}  // namespace

std::vector<std::string> commandLine(int, char**) {
  SetConsoleOutputCP(CP_UTF8);
  std::vector<std::string> arguments;
  int count = 0;
  wchar_t** const texts = CommandLineToArgvW(GetCommandLineW(), &count);
  if (texts == nullptr) return arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(toUtf8(texts[i]));
  LocalFree(texts);
  return arguments;
}

std::string executableDirectory() {
  std::wstring path(32768, L'\0');  // the longest path that there is
  const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  path.resize(length);
  return std::filesystem::path(path).parent_path().u8string();
}

std::string environmentVariable(const std::string& name) {
  const wchar_t* const value = _wgetenv(std::filesystem::u8path(name).c_str());
  return value == nullptr ? std::string() : toUtf8(value);
}

std::string hostName() { return environmentVariable("COMPUTERNAME"); }

#else

std::vector<std::string> commandLine(int argc, char** argv) {
  if (argc < 1) return {};
  return std::vector<std::string>(argv + 1, argv + argc);
}

std::string executableDirectory() {
  std::error_code failure;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failure);
  return failure ? std::string() : program.parent_path().u8string();
}

std::string environmentVariable(const std::string& name) {
  const char* const value = std::getenv(name.c_str());
  return value == nullptr ? std::string() : std::string(value);
}

std::string hostName() {
  // Room for a zero byte behind the longest: one that was cut off has none.
  std::array<char, 257> name{};
  return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : std::string();
}

#endif

}  // namespace host
