#include "providers/processor/operations/OperationTable.h"

namespace providers {

const Operations& processorOperations() {
  static const Operations operations = [] {
    Operations all;
    addIntegerOperations(all);
    addBitOperations(all);
    addWidthOperations(all);
    addFloatOperations(all);
    addSseOperations(all);
    addAvx2Operations(all);
    addAvx512Operations(all);
    addCipherOperations(all);
    addDotOperations(all);
    addTileOperations(all);
    return all;
  }();
  return operations;
}

}  // namespace providers
