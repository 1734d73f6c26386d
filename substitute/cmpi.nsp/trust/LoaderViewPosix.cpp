#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <sys/auxv.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include "substitute/cmpi.nsp/trust/Bytes.h"
#include "substitute/cmpi.nsp/trust/LoaderCache.h"
#include "substitute/cmpi.nsp/trust/LoaderView.h"
#include "substitute/cmpi.nsp/trust/RunPath.h"

namespace cmpinsp {

namespace {

const char* const kCacheFile = "/etc/ld.so.cache";

/// In the environment, an empty folder or "." is the current one.
std::string absolute(const std::string& folder) {
  std::error_code error;
  if (folder == ".") return std::filesystem::current_path(error).string();
  std::string path = std::filesystem::absolute(folder, error).string();
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

/// The loader compares with names and sonames itself. The handle is kept: what is to be relied on
/// may not be unloaded.
bool isLoadedHere(const std::string& name) {
  static std::mutex mutex;
  static auto* const known = new std::set<std::string>;
  const std::lock_guard<std::mutex> lock(mutex);
  if (known->count(name) != 0) return true;
  if (dlopen(name.c_str(), RTLD_LAZY | RTLD_NOLOAD) == nullptr) return false;
  known->insert(name);
  return true;
}

const std::string& cacheContent() {
  static const auto* const content = [] {
    const auto bytes = bytesOfFile(kCacheFile);
    auto text = bytes->read(0, static_cast<std::size_t>(bytes->size()));
    return new std::string(text ? std::move(*text) : std::string());
  }();
  return *content;
}

/// The folders of the loader's own list for that library, in its order: run paths, those of the
/// environment, default ones. It does not tell which is which.
std::vector<std::string> searchListOf(void* library) {
  std::vector<std::string> folders;
  Dl_serinfo size{};
  if (library == nullptr || dlinfo(library, RTLD_DI_SERINFOSIZE, &size) != 0) return folders;
  std::vector<std::max_align_t> room(size.dls_size / sizeof(std::max_align_t) + 1);
  auto* const list = reinterpret_cast<Dl_serinfo*>(room.data());
  list->dls_size = size.dls_size;
  list->dls_cnt = size.dls_cnt;
  if (dlinfo(library, RTLD_DI_SERINFO, list) != 0) return folders;
  for (unsigned i = 0; i < list->dls_cnt; ++i) {
    folders.push_back(absolute(list->dls_serpath[i].dls_name));
  }
  return folders;
}

/// The dynamic section of what is loaded, where the loader puts addresses in the place of offsets.
struct DynamicSection {
  DynamicSection(const ElfW(Dyn) * entry, ElfW(Addr) base) {
    for (; entry->d_tag != DT_NULL; ++entry) {
      if (entry->d_tag == DT_STRTAB) strings = entry->d_un.d_ptr;
      if (entry->d_tag == DT_RPATH) runPathOfAll = entry;
      if (entry->d_tag == DT_RUNPATH) hasRunPath = true;
    }
    if (strings < base) strings += base;
  }
  const char* runPath() const {
    if (runPathOfAll == nullptr || hasRunPath || strings == 0) return "";
    return reinterpret_cast<const char*>(strings) + runPathOfAll->d_un.d_val;
  }
  ElfW(Addr) strings = 0;
  const ElfW(Dyn) * runPathOfAll = nullptr;
  bool hasRunPath = false;
};

/// Where that file lies; the program itself has no name in the loader's list.
std::string folderOf(const std::string& file) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path path = file.empty() ? fs::read_symlink("/proc/self/exe", error) : fs::path(file);
  return path.parent_path().string();
}

int addRunPath(dl_phdr_info* object, std::size_t, void* data) {
  LoaderView& view = *static_cast<LoaderView*>(data);
  for (unsigned i = 0; i < object->dlpi_phnum; ++i) {
    if (object->dlpi_phdr[i].p_type != PT_DYNAMIC) continue;
    const auto* const entries =
        reinterpret_cast<const ElfW(Dyn)*>(object->dlpi_addr + object->dlpi_phdr[i].p_vaddr);
    const std::vector<std::string> folders =
        foldersIn(DynamicSection(entries, object->dlpi_addr).runPath());
    if (folders.empty()) continue;
    const Placeholders placeholders{folderOf(object->dlpi_name),
                                    libraryFoldersOf(view.defaultFolders), view.platforms};
    for (const std::string& folder : folders)
      for (const std::string& each : expansionsOf(folder, placeholders))
        view.processFolders.push_back(absolute(each));
  }
  return 0;
}

/// The values that the variable had when the process began, which is what the loader goes by, and
/// that it has now, should the process have overwritten those.
std::vector<std::string> librarySearchPaths() {
  const std::string name = "LD_LIBRARY_PATH=";
  std::vector<std::string> values;
  if (getauxval(AT_SECURE) != 0) return values;
  std::ifstream environment("/proc/self/environ", std::ios::binary);
  for (std::string each; std::getline(environment, each, '\0');) {
    if (each.compare(0, name.size(), name) == 0) values.push_back(each.substr(name.size()));
  }
  const char* const now = std::getenv("LD_LIBRARY_PATH");
  if (now != nullptr && (values.empty() || values.front() != now)) values.emplace_back(now);
  return values;
}

void addEnvironmentFolders(LoaderView& view) {
  const Placeholders placeholders{folderOf(std::string()), libraryFoldersOf(view.defaultFolders),
                                  view.platforms};
  for (std::string& value : librarySearchPaths()) {
    std::replace(value.begin(), value.end(), ';', ':');
    for (const std::string& folder : foldersIn(value))
      for (const std::string& each : expansionsOf(folder, placeholders))
        view.environmentFolders.push_back(absolute(each));
  }
}

bool contains(const std::vector<std::string>& texts, const std::string& text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

/// What the loader lists besides run paths and folders of the environment, which come first in the
/// list: what is in it twice is a default folder that is searched for another reason as well.
void keepDefaultFolders(LoaderView& view) {
  std::vector<std::string> kept;
  const auto& list = view.defaultFolders;
  for (auto each = list.begin(); each != list.end(); ++each) {
    const bool isElsewhere =
        contains(view.processFolders, *each) || contains(view.environmentFolders, *each);
    const bool isSecond = std::find(list.begin(), each, *each) != each;
    if (isSecond || !isElsewhere) kept.push_back(*each);
  }
  view.defaultFolders = std::move(kept);
}

/// Older loaders name the processor more closely there than the kernel does.
std::vector<std::string> possiblePlatforms() {
  std::vector<std::string> names{"haswell", "xeon_phi"};
  const auto* const name = reinterpret_cast<const char*>(getauxval(AT_PLATFORM));
  if (name != nullptr) names.emplace_back(name);
  return names;
}

}  // namespace

LoaderView viewOfThisProcess() {
  LoaderView view;
  view.isLoaded = isLoadedHere;
  view.cached = [](const std::string& name) { return cachedFiles(cacheContent(), name); };
  view.platforms = possiblePlatforms();
  // The system's library has no run path of its own, which would be in the list as well.
  void* const library = dlopen("libc.so.6", RTLD_LAZY | RTLD_NOLOAD);
  view.defaultFolders = searchListOf(library);
  if (library != nullptr) dlclose(library);
  dl_iterate_phdr(addRunPath, &view);
  addEnvironmentFolders(view);
  keepDefaultFolders(view);
  return view;
}

}  // namespace cmpinsp
