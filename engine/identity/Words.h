#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "engine/system/Telling.h"

/// How a machine's makers and its reports put things.
namespace engine {

/// Those that are not empty, with that between them.
std::string joined(std::initializer_list<std::string> texts, std::string_view between);

/// "16 GiB", "512 MiB": as memory is sold.
std::string memorySize(std::uint64_t bytes);

/// "480 GB", "1.9 TB", "8 TB": as disks are sold; empty for 0.
std::string diskSize(std::uint64_t bytes);

/// "1 core", "2 cores"; empty for 0.
std::string counted(std::uint64_t count, const std::string& what);

}  // namespace engine
