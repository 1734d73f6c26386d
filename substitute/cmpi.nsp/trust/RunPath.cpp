#include "substitute/cmpi.nsp/trust/RunPath.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace cmpinsp {

namespace {

bool isPartOfName(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

/// How long the placeholder `name` is at the beginning of `text`, which begins with '$'; 0 if that
/// is none. "$LIBX" is another name; between braces the name has to end with them.
std::size_t lengthOf(std::string_view text, std::string_view name) {
  const bool hasBraces = text.substr(1, 1) == "{";
  const std::size_t begin = hasBraces ? 2 : 1;
  if (text.substr(begin, name.size()) != name) return 0;
  const std::string_view rest = text.substr(begin + name.size());
  if (hasBraces) return rest.substr(0, 1) == "}" ? begin + name.size() + 1 : 0;
  return !rest.empty() && isPartOfName(rest.front()) ? 0 : begin + name.size();
}

/// Adds each of the values to each of the texts.
void append(std::vector<std::string>& texts, const std::vector<std::string>& values) {
  if (values.size() == 1) {
    for (std::string& text : texts) text += values.front();
    return;
  }
  std::vector<std::string> longer;
  for (const std::string& text : texts)
    for (const std::string& value : values) longer.push_back(text + value);
  texts = std::move(longer);
}

}  // namespace

std::vector<std::string> expansionsOf(const std::string& text, const Placeholders& placeholders) {
  constexpr std::size_t kMostTexts = 64;
  const struct {
    const char* name;
    std::vector<std::string> values;
  } known[] = {{"ORIGIN", {placeholders.origin}},
               {"LIB", placeholders.folders},
               {"PLATFORM", placeholders.platforms}};
  std::vector<std::string> texts{std::string()};
  for (std::string_view rest = text; !rest.empty();) {
    std::size_t taken = 0;
    for (const auto& each : known) {
      if (taken == 0 && rest.front() == '$') taken = lengthOf(rest, each.name);
      if (taken == 0) continue;
      append(texts, each.values);
      break;
    }
    if (taken == 0) {
      taken = std::min(rest.find('$', 1), rest.size());
      append(texts, {std::string(rest.substr(0, taken))});
    }
    if (texts.size() > kMostTexts) return {};
    rest.remove_prefix(taken);
  }
  return texts;
}

std::vector<std::string> foldersIn(const std::string& runPath) {
  std::vector<std::string> folders;
  if (runPath.empty()) return folders;
  std::size_t begin = 0;
  for (std::size_t colon = 0; colon != std::string::npos; begin = colon + 1) {
    colon = runPath.find(':', begin);
    const std::string folder = runPath.substr(begin, colon - begin);
    folders.push_back(folder.empty() ? "." : folder);
  }
  return folders;
}

std::vector<std::string> libraryFoldersOf(const std::vector<std::string>& defaultFolders) {
  std::vector<std::string> names;
  for (const std::string& folder : defaultFolders) {
    const std::size_t begin = folder.compare(0, 5, "/usr/") == 0 ? 5 : 1;
    std::string name = folder.substr(std::min(begin, folder.size()));
    while (!name.empty() && name.back() == '/') name.pop_back();
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  }
  return names;
}

}  // namespace cmpinsp
