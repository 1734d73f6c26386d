#pragma once

#include <string>

#include "engine/Engine.h"

/// What verbs answer with `--json`: one JSON text each, without a line end. Bytes that are no UTF-8
/// become U+FFFD.
namespace engine {

std::string jsonOf(const Inventory& inventory);
std::string jsonOf(const ProvidersAnswer& answer);
std::string jsonOf(const CheckAnswer& answer);

}  // namespace engine
