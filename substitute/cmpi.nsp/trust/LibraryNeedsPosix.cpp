#include "substitute/cmpi.nsp/trust/ElfNeeds.h"
#include "substitute/cmpi.nsp/trust/LibraryNeeds.h"

namespace cmpinsp {

class LibraryNeeds::Impl : public ElfNeeds {
 public:
  using ElfNeeds::ElfNeeds;
};

LibraryNeeds::LibraryNeeds(PathRights& rights)
    : m_impl(std::make_unique<Impl>(rights, viewOfThisProcess())) {}
LibraryNeeds::~LibraryNeeds() = default;

std::string LibraryNeeds::refusalOf(const std::string& library) {
  return m_impl->refusalOf(library);
}

}  // namespace cmpinsp
