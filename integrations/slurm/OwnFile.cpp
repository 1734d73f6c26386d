#include "integrations/slurm/OwnFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "integrations/slurm/SettingError.h"

namespace slurm {

void needOwnFile(const std::string& file) {
  struct stat found {};
  if (::stat(file.c_str(), &found) != 0) throw SettingError(file + ": " + std::strerror(errno));
  if (!S_ISREG(found.st_mode)) throw SettingError(file + " is no regular file");
  if (found.st_uid != 0 && found.st_uid != ::geteuid()) {
    throw SettingError(file + " belongs to another user");
  }
  if ((found.st_mode & (S_IWGRP | S_IWOTH)) != 0)
    throw SettingError(file + ": others can write it");
}

}  // namespace slurm
