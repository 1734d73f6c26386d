#pragma once

#include <string>
#include <vector>

#include "engine/Offer.h"
#include "engine/worker/model/ObjectReading.h"

namespace engine::worker {

/// Fills in what the object model says of the tests with these identifiers: service, device and
/// element, the service's class, the estimate, the characteristics, the settings. `objects` is the
/// object manager's namespace. What nobody tells stays as it is; what a provider fails in costs its
/// own tests their facts, and is returned in words.
std::vector<std::string> addFacts(const Objects& objects, std::vector<OfferedTest>& tests);

}  // namespace engine::worker
