#pragma once

#include "providers/processor/operations/Operation.h"

namespace providers {

/// All operations that this processor has the instructions for, but for those of libraries.
const Operations& processorOperations();

// The parts of the table. Those of instructions that the processor lacks add nothing.
void addIntegerOperations(Operations& operations);
void addBitOperations(Operations& operations);
void addWidthOperations(Operations& operations);
void addFloatOperations(Operations& operations);
void addSseOperations(Operations& operations);
void addAvx2Operations(Operations& operations);
void addAvx512Operations(Operations& operations);
void addCipherOperations(Operations& operations);
void addDotOperations(Operations& operations);
void addTileOperations(Operations& operations);

/// The one on tiles, also where the processor has none and it can be answered alone.
Operation tileOperation();

}  // namespace providers
