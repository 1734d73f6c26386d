#pragma once

#include "engine/Engine.h"

/// What is said on standard error of an answer: what may be missing from it, and why.
namespace host {

/// The warnings, and what providers wrote while they were asked.
void reportWarnings(const engine::Circumstances& circumstances);

/// One line that names every provider that cannot be used, and one for each that was left out
/// because it crashed or hung. Whether there was any.
bool reportUnusable(const engine::Circumstances& circumstances);

/// Whether a provider was left out because it crashed or hung.
bool hasLeftOut(const engine::Circumstances& circumstances);

/// What makes a provider fail, with what it is doing then: "it crashed: segmentation fault
/// (signal 11), in enumInstances of AcmeProvider (libacme.so, libc.so.6)".
std::string textOf(const engine::Error& error);

}  // namespace host
