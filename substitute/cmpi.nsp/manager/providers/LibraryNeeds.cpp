#include "substitute/cmpi.nsp/manager/providers/LibraryNeeds.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>
#include <vector>

#include "substitute/cmpi.nsp/installation/PathForm.h"
#include "substitute/cmpi.nsp/installation/PathRights.h"
#include "substitute/cmpi.nsp/installation/SystemMessage.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

/// A library beside the one in question.
struct Neighbour {
  fs::path file;
  std::string name;     ///< with letters in small case
  std::string refusal;  ///< why others could change it; empty when they cannot
  bool isNeeded = false;
};

/// True for names like libx.so, libx.so.1 and x.dll, in small case.
bool isLibrary(const std::string& name) {
  const std::string ending = fs::u8path(name).extension().u8string();
  return ending == ".so" || ending == ".dll" || name.find(".so.") != std::string::npos;
}

std::vector<Neighbour> neighboursOf(const fs::path& library, std::error_code& error) {
  std::vector<Neighbour> neighbours;
  fs::directory_iterator entry(library.parent_path(), error);
  for (const fs::directory_iterator end; !error && entry != end; entry.increment(error)) {
    // Empty where it is no text, which no library can have in it.
    std::string name = vorcore::nameKey(textOf(entry->path().filename()));
    if (!isLibrary(name) || entry->path() == library) continue;
    std::error_code dangling;
    const fs::path real = fs::canonical(entry->path(), dangling);
    if (dangling) continue;
    neighbours.push_back({entry->path(), std::move(name), whyOthersCanChange(real.u8string())});
  }
  return neighbours;
}

std::string bytesOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// The files that a library needs are named in it as they are, with a NUL behind them; on Windows
/// the case of letters may differ. One that is named for another reason counts as well.
bool isNamedIn(const std::string& foldedBytes, const std::string& name) {
  return foldedBytes.find(name + '\0') != std::string::npos;
}

}  // namespace

/// Faults are rare, and libraries large: they are read where there is a fault alone, which is no
/// affair of providers that do not need that file.
std::string whyOthersCanChangeNeeds(const std::string& library) {
  std::error_code error;
  std::vector<Neighbour> neighbours = neighboursOf(fs::u8path(library), error);
  if (error) return "what lies beside " + library + " cannot be examined: " + systemMessage(error);
  const bool allGood = std::all_of(neighbours.begin(), neighbours.end(),
                                   [](const Neighbour& each) { return each.refusal.empty(); });
  if (allGood) return std::string();
  std::vector<fs::path> open{fs::u8path(library)};
  while (!open.empty()) {
    const std::string bytes = vorcore::nameKey(bytesOf(open.back()));
    open.pop_back();
    for (Neighbour& each : neighbours) {
      if (each.isNeeded || !isNamedIn(bytes, each.name)) continue;
      if (!each.refusal.empty()) return library + " needs a library: " + each.refusal;
      each.isNeeded = true;
      open.push_back(each.file);
    }
  }
  return std::string();
}

}  // namespace cmpinsp
