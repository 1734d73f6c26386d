#include "engine/identity/Smbios.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

/// What is told tells something, in texts that are not endless and do not end where they do not.
void expectSense(const engine::Part& part) {
  if (part.kind.empty() || part.name.empty()) std::abort();
  for (const std::string* text : {&part.location, &part.manufacturer, &part.model, &part.serial}) {
    if (text->size() > 1024 || text->find('\0') != std::string::npos) std::abort();
  }
}

}  // namespace

/// Whatever a machine's firmware hands over.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const engine::Identity identity =
      engine::identityOfSmbios({reinterpret_cast<const char*>(data), size});
  for (const engine::Part& part : identity.parts) expectSense(part);
  return 0;
}
