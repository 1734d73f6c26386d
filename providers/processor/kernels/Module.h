#pragma once

#include <cstddef>

#include "providers/processor/operations/Operation.h"

// What a module of kernels exports.

#define DIAGS_KERNELS "diagsKernels"

extern "C" {

/// Its operations, which live as long as the module; `compute` is null in one that the module's
/// library does not offer here. What has no answer ends an item's results with a word that is 1 if
/// they are right (see `mayBeRight`).
using DiagsKernels = const providers::Operation* (*)(std::size_t* count);
}
