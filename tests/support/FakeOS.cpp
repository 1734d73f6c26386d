#include "tests/support/FakeOS.h"

#include "framework/TOSSpecific.h"
#include "framework/TVORException.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/Script.h"
#include "tests/support/Text.h"

namespace support {

FakeOS& FakeOS::current() {
  static FakeOS os;
  return os;
}

void FakeOS::clear() { *this = FakeOS(); }

std::string FakeOS::dataPath(const std::string& name) const {
  return rootPath + "\\kfr\\data\\" + name;
}

std::uint64_t FakeOS::sizeOf(const std::string& path) const {
  const auto said = m_sizes.find(path);
  if (said != m_sizes.end()) {
    return said->second;
  }
  const FakePlatform& platform = FakePlatform::current();
  if (!platform.hasFile(path)) {
    throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(NZELVOR20::eVORNotFound, path));
  }
  return platform.file(path).size();
}

}  // namespace support

namespace NZELVOR20 {

namespace {

void enter(const std::string& call) {
  support::Script::current().enter("TOSSpecific." + call, support::Returns::other,
                                   support::Kind::os);
}

}  // namespace

std::string TOSSpecific::GetVORRootPath() {
  enter("GetVORRootPath()");
  return support::FakeOS::current().rootPath;
}

std::uint64_t TOSSpecific::GetFileSize(const std::string& path) {
  enter("GetFileSize(" + support::quoted(path) + ")");
  return support::FakeOS::current().sizeOf(path);
}

std::string TOSSpecific::GetBiosID() {
  enter("GetBiosID()");
  return support::FakeOS::current().biosID;
}

bool TOSSpecific::isOEMBuild() {
  enter("isOEMBuild()");
  return support::FakeOS::current().isOEM;
}

}  // namespace NZELVOR20
