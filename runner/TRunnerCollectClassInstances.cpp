#include "runner/TRunnerCollectClassInstances.h"

#include <iostream>
#include <string>

#include "runner/PropertyLines.h"

bool TRunnerCollectClassInstances::operator()(
    boost::shared_ptr<NZELVOR20::ICIMInstance> instance) const {
  if (!instance) {
    return true;
  }
  std::string text =
      "TRunnerCollectClassInstances(" + instance->GetObjectPath({}).GetPath() + ")\n";
  diagsrunner::appendPropertyLines(instance, text);
  std::cout << text << std::endl;
  return true;
}
