#include "substitute/cmpi.nsp/registration/RegistrationFolder.h"

#include <new>
#include <string>
#include <system_error>

#include "substitute/cmpi.nsp/installation/FolderListing.h"
#include "substitute/cmpi.nsp/installation/SystemMessage.h"
#include "substitute/cmpi.nsp/registration/RegistrationReaders.h"
#include "substitute/cmpi.nsp/repository/SourceText.h"

namespace cmpinsp {

namespace {

constexpr const char* kLines = ".registration";
constexpr const char* kSections = ".reg";

/// What is no text is told by its ending.
bool isOf(const FolderEntry& entry, const char* ending) {
  return hasEnding(entry.name, ending) || hasEnding("a" + std::string(entry.ending), ending);
}

void readFile(const std::string& file, bool isLines, FolderRegistrations& read,
              std::vector<substitute::Problem>& problems) {
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

void readEntry(const std::string& folder, const FolderEntry& entry, FolderRegistrations& read,
               std::vector<substitute::Problem>& problems) {
  const bool isLines = isOf(entry, kLines);
  if (!isLines && !isOf(entry, kSections)) return;
  if (!entry.name.empty()) return readFile(pathIn(folder, entry.name), isLines, read, problems);
  problems.push_back({folder, 0, 0,
                      std::string("the name of a \"") + (isLines ? kLines : kSections) +
                          "\" file in it is no text; it is left out"});
}

}  // namespace

FolderRegistrations readRegistrationFolder(const std::string& folder,
                                           std::vector<substitute::Problem>& problems) {
  const FolderListing listing = listFolder(folder);
  const std::error_code& error = listing.error();
  if (error == std::errc::not_enough_memory) throw std::bad_alloc();
  if (error && error != std::errc::no_such_file_or_directory) {
    problems.push_back(
        {folder, 0, 0, "the registration files in it cannot be found: " + systemMessage(error)});
  }
  FolderRegistrations read;
  for (const FolderEntry& entry : listing.entries()) readEntry(folder, entry, read, problems);
  return read;
}

}  // namespace cmpinsp
