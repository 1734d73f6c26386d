#include <unistd.h>

#include "providers/common/model/SystemName.h"

namespace providers {

std::string systemName() {
  char name[257] = {};
  if (gethostname(name, sizeof name - 1) != 0 || name[0] == '\0') return "localhost";
  return name;
}

}  // namespace providers
