#pragma once

#include <string>

#include "engine/Engine.h"

/// What verbs answer with `--json`: one JSON text each, without a line end. Bytes that are no UTF-8
/// become U+FFFD.
namespace host {

std::string jsonOf(const engine::Inventory& inventory);
std::string jsonOf(const engine::ProvidersAnswer& answer);
std::string jsonOf(const engine::CheckAnswer& answer);

}  // namespace host
