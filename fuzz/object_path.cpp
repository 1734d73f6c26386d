#include <cstdint>
#include <cstdlib>
#include <string>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/model/ObjectPath.h"

/// Whatever text is given for an object path: it is refused with a place, or it is a path whose own
/// text is read as the same path again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string given(reinterpret_cast<const char*>(data), size);
  cmpinsp::ObjectPath path;
  try {
    path = cmpinsp::ObjectPath::parse(given);
  } catch (const NZELVOR20::TVORException& refusal) {
    if (std::string(refusal.what()).find("position") == std::string::npos) std::abort();
    return 0;
  }
  if (path.className.empty() || !(path == path)) std::abort();
  const std::string text = path.toText();
  const cmpinsp::ObjectPath again = cmpinsp::ObjectPath::parse(text);
  if (!(again == path) || again.toText() != text) std::abort();
  return 0;
}
