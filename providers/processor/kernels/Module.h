#pragma once

#include <cstddef>

#include "providers/processor/operations/Operation.h"

// What a module of kernels exports.

#define DIAGS_KERNELS "diagsKernels"

extern "C" {

/// Its operations, which live as long as the module.
using DiagsKernels = const providers::Operation* (*)(std::size_t* count);
}
