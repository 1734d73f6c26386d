#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "engine/worker/counters/Reading.h"

namespace engine::counters {

/// What a file counts, each by its name; nothing that is no number is among them.
using Counts = std::map<std::string, std::uint64_t>;

Counts countsIn(const Key& key, const std::string& content);

}  // namespace engine::counters
