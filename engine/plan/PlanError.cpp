#include "engine/plan/PlanError.h"

namespace engine {

void refuse(const Place& place, const std::string& text) {
  if (place.file.empty()) throw PlanError(text);
  throw PlanError(place.file + ':' + std::to_string(place.line) + ':' +
                  std::to_string(place.column) + ": " + text);
}

}  // namespace engine
