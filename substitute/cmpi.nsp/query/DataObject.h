#pragma once

#include <optional>
#include <string>

#include "substitute/cmpi.nsp/model/InstanceData.h"
#include "substitute/cmpi.nsp/query/Evaluation.h"
#include "substitute/cmpi.nsp/repository/ClassRepository.h"

namespace cmpinsp::query {

/// An instance that a condition is held against; refers to both for as long as it lives.
class DataObject : public IObject {
 public:
  DataObject(const InstanceData& data, const ClassRepository& classes)
      : m_data(data), m_classes(classes) {}

  /// Throws `TVORException` (no such property) for what the class does not declare. Of a class that
  /// nobody declared, a property that is not there is null.
  std::optional<NZELVOR20::TCIMValue> property(const std::string& name) const override;
  std::string className() const override { return m_data.path.className; }
  bool isA(const std::string& className, const std::string& ancestor) const override {
    return m_classes.isA(className, ancestor);
  }

 private:
  const InstanceData& m_data;
  const ClassRepository& m_classes;
};

/// Whether the instance is of the class that is selected from. A class that nobody declared cannot
/// be judged and is let through.
bool isOfSelectedClass(const Query& query, const InstanceData& data,
                       const ClassRepository& classes);

/// The same, and whether it satisfies the condition.
bool selects(const Query& query, const InstanceData& data, const ClassRepository& classes);

}  // namespace cmpinsp::query
