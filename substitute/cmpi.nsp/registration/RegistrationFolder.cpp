#include "substitute/cmpi.nsp/registration/RegistrationFolder.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/installation/PathForm.h"
#include "substitute/cmpi.nsp/installation/SystemMessage.h"
#include "substitute/cmpi.nsp/registration/RegistrationReaders.h"
#include "substitute/cmpi.nsp/repository/SourceText.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

void readFile(const fs::path& path, std::vector<Registration>& registrations,
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
    (isLines ? readRegistrationLines : readRegistrationSections)(file, text, registrations,
                                                                 problems);
  } catch (const NZELVOR20::TVORException& error) {
    problems.push_back({file, 0, 0, error.what()});
  }
}

}  // namespace

std::vector<Registration> readRegistrationFolder(const std::string& folder,
                                                 std::vector<substitute::Problem>& problems) {
  std::vector<fs::path> files;
  std::error_code error;
  fs::directory_iterator entry(fs::u8path(folder), error);
  for (const fs::directory_iterator end; !error && entry != end; entry.increment(error)) {
    files.push_back(entry->path());
  }
  if (error && error != std::errc::no_such_file_or_directory) {
    problems.push_back(
        {folder, 0, 0, "the registration files in it cannot be found: " + systemMessage(error)});
  }
  std::sort(files.begin(), files.end());
  std::vector<Registration> registrations;
  for (const fs::path& file : files) readFile(file, registrations, problems);
  return registrations;
}

}  // namespace cmpinsp
