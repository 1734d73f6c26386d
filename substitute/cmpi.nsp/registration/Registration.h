#pragma once

#include <string>
#include <vector>

namespace cmpinsp {

/// The CMPI interfaces that a provider offers for a class; a set is their sum.
enum ProviderInterface : unsigned {
  kInstanceInterface = 1,
  kAssociationInterface = 2,
  kMethodInterface = 4,
  kPropertyInterface = 8,
  kIndicationInterface = 16
};

/// The interfaces of a set by name ("instance", "method"), in the order above.
std::vector<std::string> interfaceNames(unsigned interfaces);

/// The interface that `word` (case-insensitive) names; 0 for none of them.
unsigned interfaceNamed(const std::string& word);

/// Where in a registration file something is said.
struct Place {
  std::string file;
  unsigned long line = 0;
  unsigned long column = 0;

  std::string toText() const;
};

/// One statement of a registration file: this provider serves this class.
struct Registration {
  std::string className;
  std::vector<std::string> namespaces;  ///< "*" for every one
  std::string provider;                 ///< the prefix of the factory symbols
  std::string library;                  ///< as registered: without folder, prefix and extension
  unsigned interfaces = 0;
  Place place;
};

/// One statement of a registration file: the instances that this MOF file declares are in this
/// namespace, unless a pragma says otherwise.
struct InstancePlacement {
  std::string mofFile;  ///< below the providers' or the schema folder
  std::string nameSpace;
  Place place;
};

}  // namespace cmpinsp
