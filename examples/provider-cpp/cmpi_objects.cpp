#include "cmpi_objects.h"

#include <algorithm>
#include <cctype>

namespace {

bool sameValue(const CMPIData& a, const CMPIData& b) {
  if (a.type != b.type || CMIsNullValue(a) || CMIsNullValue(b)) return false;
  if (a.type == CMPI_ref) return samePath(a.value.ref, b.value.ref);
  return a.type == CMPI_string && textOf(a.value.string) == textOf(b.value.string);
}

}  // namespace

bool sameName(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
    return std::tolower(x) == std::tolower(y);
  });
}

bool samePath(const CMPIObjectPath* a, const CMPIObjectPath* b) {
  const CMPICount keys = CMGetKeyCount(a, nullptr);
  if (keys != CMGetKeyCount(b, nullptr)) return false;
  if (!sameName(textOf(CMGetClassName(a, nullptr)), textOf(CMGetClassName(b, nullptr))))
    return false;
  for (CMPICount i = 0; i < keys; ++i) {
    CMPIString* name = nullptr;
    const CMPIData mine = CMGetKeyAt(a, i, &name, nullptr);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIData other = CMGetKey(b, textOf(name).c_str(), &status);
    if (status.rc != CMPI_RC_OK || !sameValue(mine, other)) return false;
  }
  return true;
}
