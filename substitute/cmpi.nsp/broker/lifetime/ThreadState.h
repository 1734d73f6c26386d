#pragma once

#include <array>
#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "substitute/cmpi.nsp/broker/lifetime/Handle.h"

namespace cmpinsp::broker {

class ClassShape;
class Scope;

/// Where a property was found: providers ask for one property again and again with one pointer.
/// Only a hint; whoever uses it compares the name.
struct KnownPosition {
  const void* declaration = nullptr;
  const char* name = nullptr;
  std::size_t position = 0;
};

/// What the broker keeps for each thread that enters it.
struct ThreadState {
  HandleCache handles;
  BlockCache blocks;
  Scope* innermost = nullptr;

  /// The class that was asked for last.
  const Broker* shapeBroker = nullptr;
  std::string shapeClass;
  boost::shared_ptr<const ClassShape> shape;

  bool isTextRepaired = false;  ///< whether text in the call that it is in was no UTF-8

  std::array<KnownPosition, 64> positions;
  std::string scratch;                   ///< a name on its way to a look-up
  std::vector<void*> keyValues;          ///< by thread key
  std::vector<unsigned> keyGenerations;  ///< which use of the key each value belongs to
  /// What ends the thread's key values; set by whoever sets the first one.
  void (*endKeyValues)(ThreadState&) noexcept = nullptr;
};

/// The calling thread's state. Also usable while the thread is ending.
ThreadState& threadState();

/// Whether a thread has ended the process in the middle of a call into a provider, by `exit`. The
/// call never returns then, and what it holds stays as it is.
bool hasExitedInCall() noexcept;

}  // namespace cmpinsp::broker
