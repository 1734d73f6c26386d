#include "substitute/cmpi.nsp/registration/RegistrationFolder.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <system_error>

#include "substitute/cmpi.nsp/installation/PathForm.h"
#include "substitute/cmpi.nsp/installation/SystemMessage.h"
#include "substitute/cmpi.nsp/registration/RegistrationReaders.h"
#include "substitute/cmpi.nsp/repository/SourceText.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

void readFile(const fs::path& path, FolderRegistrations& read,
              std::vector<substitute::Problem>& problems) {
  const std::string extension = vorcore::nameKey(textOf(path.extension()));
  const bool isLines = extension == ".registration";
  if (!isLines && extension != ".reg") return;
  const std::string file = textOf(path);
  if (file.empty()) {
    problems.push_back(
        {textOf(path.parent_path()), 0, 0,
         "the name of a \"" + extension + "\" file in it is no text; it is left out"});
    return;
  }
  try {
    const std::string text = readSourceText(file);
    if (isLines) {
      readRegistrationLines(file, text, read.classes, read.placements, problems);
    } else {
      readRegistrationSections(file, text, read.classes, problems);
    }
  } catch (const SourceError& error) {
    problems.push_back({file, 0, 0, error.what()});
  }
}

}  // namespace

FolderRegistrations readRegistrationFolder(const std::string& folder,
                                           std::vector<substitute::Problem>& problems) {
  std::vector<fs::path> files;
  std::error_code error;
  fs::directory_iterator entry(fs::u8path(folder), error);
  for (const fs::directory_iterator end; !error && entry != end; entry.increment(error)) {
    files.push_back(entry->path());
  }
  if (error == std::errc::not_enough_memory) throw std::bad_alloc();
  if (error && error != std::errc::no_such_file_or_directory) {
    problems.push_back(
        {folder, 0, 0, "the registration files in it cannot be found: " + systemMessage(error)});
  }
  std::sort(files.begin(), files.end());
  FolderRegistrations read;
  for (const fs::path& file : files) readFile(file, read, problems);
  return read;
}

}  // namespace cmpinsp
