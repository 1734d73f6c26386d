#pragma once

#include <string>

namespace engine {

/// The environment variable that a worker hands on to whatever it starts.
inline const char* const kMarkVariable = "DIAGS_WORKER_MARK";

/// A text that no other worker's processes have.
std::string newMark();

/// Kills every process that has this mark in its environment: those that a worker left behind when
/// it was killed together with what looks after it. On Windows their job has ended them already.
/// Throws nothing; processes of others, that may not be killed, stay.
void killMarked(const std::string& mark) noexcept;

}  // namespace engine
