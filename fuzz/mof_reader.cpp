#include <cstdint>
#include <cstdlib>
#include <string>

#include "substitute/cmpi.nsp/manager/operations/StaticInstances.h"
#include "substitute/cmpi.nsp/repository/ClassBuilder.h"
#include "substitute/cmpi.nsp/repository/MofParser.h"
#include "substitute/cmpi.nsp/repository/SourceText.h"

/// Whatever a schema file holds: it is read to its end, every class that comes out is whole, and
/// each fault has a place in the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text =
      cmpinsp::decodeSourceText(std::string(reinterpret_cast<const char*>(data), size));
  std::vector<substitute::Problem> problems;
  const std::vector<cmpinsp::CompilationUnit> units{cmpinsp::parseMof("f", text, problems)};
  const cmpinsp::QualifierTable qualifiers;
  cmpinsp::ClassTable classes;
  cmpinsp::buildClasses(units, qualifiers, classes, problems);
  cmpinsp::buildStaticInstances(units, classes, {}, problems, problems);
  for (const std::string& name : classes.rootClasses()) {
    const auto root = classes.find(name);
    if (!root || root->isOpen == root->superclass.empty()) std::abort();
  }
  for (const substitute::Problem& problem : problems) {
    if (problem.line == 0 || problem.column == 0 || problem.message.empty()) std::abort();
  }
  return 0;
}
