#include "substitute/cmpi.nsp/installation/DataFileVocabulary.h"

namespace cmpinsp {

const std::vector<DataFileRules>& dataFileRules() {
  static const std::vector<DataFileRules> kRules = {
      {"vendor_diagnostic_msgs.xml",
       "diaganalysis",
       {{"diaganalysis", {}, {"version"}, {}},
        {"diagnostictest", {"diaganalysis"}, {"name"}, {}},
        {"result", {"diagnostictest"}, {}, {"state"}},
        {"errorcode", {"result"}, {}, {}},
        {"msg", {"result"}, {}, {}},
        {"action", {"result"}, {}, {"priority"}},
        {"oemaction", {"result"}, {}, {"priority"}}}},
      {"excludetests.xml", "vor", {{"vor", {}, {"version"}, {}}, {"test", {"vor"}, {"name"}, {}}}},
      {"excludetestmatrix.xml",
       "",
       {{"biosid", {""}, {}, {"name"}}, {"diagnostictest", {"biosid"}, {}, {"name"}}}},
  };
  return kRules;
}

}  // namespace cmpinsp
