#pragma once

#include <optional>
#include <string>
#include <vector>

#include "engine/protocol/Messages.h"

/// The worker's end of the protocol's pipes.
namespace engine::wire {

/// Takes the descriptors that the supervisor opened out of the way of what is loaded later: it may
/// close all that it does not know, and hands none on to what it starts. False where they are not
/// there: then nobody has started this program who could hear it.
bool open();

/// The next line; empty at the end. Blocks; one thread reads.
std::optional<std::string> readLine();

/// Sends one message, or several at once; from any thread. A supervisor that is gone ends the
/// process.
void send(const Reply& reply);
void send(const std::vector<Reply>& replies);

/// Leaves word of where this process is, for a supervisor who has to know; from any thread.
void leaveWord(const char* provider, const char* operation) noexcept;

/// Tells of it at once, in order with what else is sent.
void tellPlace(const char* provider, const char* operation) noexcept;

/// Says that there is no memory, and takes none for that.
void sendOutOfMemory() noexcept;

/// For a process that dies: writes without a lock and without memory. `line` ends with a line feed.
void sendLastWord(const char* line, std::size_t size) noexcept;

}  // namespace engine::wire
