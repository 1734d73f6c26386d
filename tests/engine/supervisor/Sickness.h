#pragma once

/// What befalls the sick provider, and where: the environment variable SICKNESS says it as
/// "phase:kind". In the phases "opening", "loading", "listing", "starting", "thread" (one of its
/// own), "polling", "reporting" and "cleaning" it is struck, and goes on where it survives. "again"
/// is about the second run in a process: its job goes on until it is told to end ("linger",
/// "lingerfail": then its record says that it failed), or its record says that it failed ("fail").
namespace sickness {

void strike(const char* phase);

/// Whether it is to behave in this way by itself.
bool is(const char* phase, const char* kind);

/// One kind that this system alone has.
struct Kind {
  const char* name;
  void (*befall)();
};

/// Those of this system, with an empty one behind the last.
extern const Kind* const kOfThisSystem;

/// Sleeps this long, or for ever.
void sleepMilliseconds(unsigned milliseconds);
void sleepForever();

}  // namespace sickness
