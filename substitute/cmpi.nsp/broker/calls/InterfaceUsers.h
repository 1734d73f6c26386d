#pragma once

namespace cmpinsp::broker {

/// Counts who uses a management interface: factories may hand one object out under several provider
/// names, and it has to be cleaned up once, when the last of them goes. Safe to use from several
/// threads.
void addInterfaceUser(const void* mi);

/// Takes one user off; true when that was the last.
bool removeInterfaceUser(const void* mi) noexcept;

}  // namespace cmpinsp::broker
