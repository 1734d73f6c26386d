#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>

namespace host {

/// Takes decimal digits alone, from `least` to `most`: no sign, no blank, no fraction and no other
/// base, which the reader of numbers behind it would all make some number of.
CLI::Validator wholeNumber(std::uint64_t least, std::uint64_t most);

}  // namespace host
