// Loads each library that is named on the command line, with all its symbols resolved, and lets it
// go again: what is missing in a library shows here, before any host meets it.

#include <cstdio>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

bool loads(const char* path) {
#if defined(_WIN32)
  const HMODULE library = LoadLibraryA(path);
  if (library == nullptr) {
    std::fprintf(stderr, "%s: error %lu\n", path, GetLastError());
    return false;
  }
  return FreeLibrary(library) != 0;
#else
  void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    return false;
  }
  return dlclose(library) == 0;
#endif
}

}  // namespace

int main(int count, char** arguments) {
  int failures = count > 1 ? 0 : 1;
  for (int i = 1; i < count; ++i) {
    if (!loads(arguments[i])) ++failures;
  }
  return failures;
}
