#pragma once

#include <string>
#include <vector>

#include "tests/runner/Query.h"
#include "tests/support/Course.h"
#include "tests/support/WithRunner.h"

namespace support {

/// What the object model does when an association is walked.
enum class Route {
  direct,
  serviceByUpcall,  ///< the service is not found where its class says
  elementByUpcall   ///< the element is not found where its class says
};

/// A test on a walk.
struct WalkedTest {
  std::string name;
  Route route = Route::direct;
  bool isExcluded = false;  ///< by its name
};

/// A machine whose list of excluded tests has one entry, and whose exclusion matrix hides nothing
/// but makes every association be looked at.
class WalkWorld : public WithRunner<> {
 public:
  explicit WalkWorld(const std::vector<WalkedTest>& tests);
};

/// How `query` should go in such a world, as the walk over the associations is laid out: which call
/// follows which, and where it goes on after a failure.
Course walkCourse(const Query& query, const std::vector<WalkedTest>& tests);

}  // namespace support
