// VERSION FILE...: every file has a version resource, and its numbers are those of VERSION.

#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

/// "1.2.3"; empty where there is no resource.
std::string versionOf(const char* path) {
  DWORD ignored = 0;
  std::vector<char> resource(GetFileVersionInfoSizeA(path, &ignored));
  if (resource.empty()) return std::string();
  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT size = 0;
  if (GetFileVersionInfoA(path, 0, static_cast<DWORD>(resource.size()), resource.data()) == 0 ||
      VerQueryValueA(resource.data(), "\\", reinterpret_cast<void**>(&fixed), &size) == 0) {
    return std::string();
  }
  return std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." +
         std::to_string(LOWORD(fixed->dwFileVersionMS)) + "." +
         std::to_string(HIWORD(fixed->dwFileVersionLS));
}

}  // namespace

int main(int count, char** arguments) {
  int failures = count > 2 ? 0 : 1;
  for (int i = 2; i < count; ++i) {
    const std::string version = versionOf(arguments[i]);
    if (version == arguments[1]) continue;
    std::fprintf(stderr, "%s: version \"%s\" instead of \"%s\"\n", arguments[i], version.c_str(),
                 arguments[1]);
    ++failures;
  }
  return failures;
}
