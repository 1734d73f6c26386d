#include "providers/processor/blame/Extent.h"

namespace providers {

Extent extentOf(const CpuPlace& blamed, const std::vector<Tried>& others) {
  bool hasSiblings = false, wrongSibling = false, wrongCore = false;
  for (const Tried& other : others) {
    if (other.place.cpu == blamed.cpu) continue;
    if (other.place.package != blamed.package) {
      if (other.wrong) return Extent::Everywhere;
    } else if (other.place.core != blamed.core) {
      wrongCore = wrongCore || other.wrong;
    } else {
      hasSiblings = true;
      wrongSibling = wrongSibling || other.wrong;
    }
  }
  if (wrongCore) return Extent::Package;
  return hasSiblings && !wrongSibling ? Extent::Thread : Extent::Core;
}

}  // namespace providers
