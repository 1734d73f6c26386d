#pragma once

#include <string>
#include <vector>

#include "engine/events/Event.h"

/// What Windows itself knows of its parts, for every user.
namespace engine {

/// In UTF-8; what is no UTF-16 becomes U+FFFD.
std::string utf8Of(const std::wstring& wide);

/// Those whose media stay where they are.
std::vector<Part> windowsDisks();

/// The network ports that are devices of this machine, each with its own hardware address as its
/// serial number.
std::vector<Part> windowsPorts();

}  // namespace engine
