#include "host/verbs/Destination.h"

#include <system_error>

namespace host {

bool Destination::isSameAs(const Destination& other) const {
  std::error_code failure;
  return std::filesystem::equivalent(path(), other.path(), failure) &&
         std::filesystem::is_regular_file(path(), failure);
}

}  // namespace host
