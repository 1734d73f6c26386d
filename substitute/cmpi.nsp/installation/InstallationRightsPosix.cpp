#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>

#include "substitute/cmpi.nsp/installation/InstallationRights.h"

namespace cmpinsp {

bool runsAsRoot() { return geteuid() == 0; }

std::string ownerBesidesRoot(const std::string& folder) {
  struct stat status {};
  if (stat(folder.c_str(), &status) != 0 || status.st_uid == 0) return std::string();
  std::array<char, 4096> room{};
  passwd entry{};
  passwd* found = nullptr;
  getpwuid_r(status.st_uid, &entry, room.data(), room.size(), &found);
  const std::string id = std::to_string(status.st_uid);
  return found == nullptr ? "a user without a name (id " + id + ")"
                          : "user " + std::string(found->pw_name) + " (id " + id + ")";
}

}  // namespace cmpinsp
