#include <cstdint>
#include <cstdlib>
#include <string>

#include "substitute/cmpi.nsp/registration/InstancePlacement.h"
#include "substitute/cmpi.nsp/registration/RegistrationReaders.h"
#include "substitute/cmpi.nsp/registration/RegistrationTable.h"
#include "substitute/cmpi.nsp/repository/MofParser.h"

namespace {

/// A registration that comes out says all that is needed to ask the provider.
void expectWhole(const std::vector<cmpinsp::Registration>& registrations) {
  for (const cmpinsp::Registration& registration : registrations) {
    if (registration.className.empty() || registration.provider.empty() ||
        registration.library.empty() || registration.namespaces.empty() ||
        registration.interfaces == 0) {
      std::abort();
    }
  }
}

}  // namespace

/// Whatever a registration file holds, in each of the three formats.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::vector<cmpinsp::Registration> registrations;
  std::vector<substitute::Problem> problems;
  std::vector<cmpinsp::InstancePlacement> placements;
  cmpinsp::readRegistrationLines("a.registration", text, registrations, placements, problems);
  cmpinsp::readRegistrationSections("b.reg", text, registrations, problems);
  std::vector<cmpinsp::CompilationUnit> units{cmpinsp::parseMof("c.mof", text, problems)};
  cmpinsp::placeInstances(placements, {"/nowhere"}, units, problems);
  cmpinsp::readRegistrationInstances(units, registrations, problems);
  expectWhole(registrations);
  cmpinsp::mergeRegistrations(registrations, problems);
  return 0;
}
