#pragma once

#include <cstddef>

#include "providers/processor/operations/Operation.h"

// What a module of kernels exports: one function, whose name ends with the number of the layout of
// what it hands over. A module that an older installation left behind has another name for it, and
// is refused before anything of it is read.

#define DIAGS_KERNELS_FUNCTION diagsKernels2
#define DIAGS_KERNELS "diagsKernels2"

static_assert(offsetof(providers::Operation, items) == 4 * sizeof(void*) &&
                  offsetof(providers::Operation, answer) == 7 * sizeof(void*) &&
                  sizeof(providers::Operation) == 8 * sizeof(void*),
              "another layout of an operation: raise the number");

extern "C" {

/// Its operations, which live as long as the module; `compute` is null in one that the module's
/// library does not offer here. What has no answer ends an item's results with a word that is 1 if
/// they are right (see `mayBeRight`).
using DiagsKernels = const providers::Operation* (*)(std::size_t* count);
}
