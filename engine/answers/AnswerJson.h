#pragma once

#include <string>

#include "engine/Engine.h"
#include "engine/plan/Prepared.h"

/// What verbs answer with `--json`: one JSON text each, without a line end. Bytes that are no UTF-8
/// become U+FFFD.
namespace engine {

std::string jsonOf(const Inventory& inventory);
std::string jsonOf(const ProvidersAnswer& answer);
std::string jsonOf(const CheckAnswer& answer);
/// Which of the offered tests a plan runs and which it passes over.
std::string jsonOf(const PreparedPlan& plan, const std::vector<OfferedTest>& offer);

}  // namespace engine
