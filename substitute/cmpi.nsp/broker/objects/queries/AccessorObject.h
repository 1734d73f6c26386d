#pragma once

#include <optional>
#include <string>

#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/query/Evaluation.h"

namespace cmpinsp::broker {

/// What a provider's accessor function knows of an object. Its answers are asked for anew each
/// time.
class AccessorObject final : public query::IObject {
 public:
  /// Throws `Failure` (invalid parameter) without a function; `parm` is for the function alone.
  AccessorObject(Broker& broker, CMPIAccessor* accessor, void* parm);

  /// Throws `Failure` (no such property) where the function has no good value.
  std::optional<NZELVOR20::TCIMValue> property(const std::string& name) const override;
  /// What the function says of "__CLASS"; empty where it says nothing.
  std::string className() const override;
  bool isA(const std::string& className, const std::string& ancestor) const override;

 private:
  Broker& m_broker;
  CMPIAccessor* m_accessor;
  void* m_parm;
};

}  // namespace cmpinsp::broker
