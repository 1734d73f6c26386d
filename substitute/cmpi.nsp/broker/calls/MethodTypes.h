#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/objects/NamedValues.h"

namespace cmpinsp::broker {

/// `value` as a value of the declared type. Throws `TVORException` (type mismatch) that names
/// `where`, which says whose call it is, and `what`.
NZELVOR20::TCIMValue fittedFor(const std::string& where, const NZELVOR20::TCIMValue& value,
                               NZELVOR20::ECIMType type, bool isArray, const std::string& what);

/// The declared types of a method's parameters and return value. What nobody declared is left as it
/// is; what does not fit throws `TVORException` (type mismatch) that names the parameter.
class MethodTypes {
 public:
  MethodTypes(Broker& broker, const std::string& className, const std::string& method);

  NamedValues fitted(const NamedValues& arguments) const;
  NZELVOR20::TCIMValue fittedReturn(const NZELVOR20::TCIMValue& value) const;

 private:
  std::string m_where;  ///< for messages
  boost::shared_ptr<const ClassShape> m_shape;
  const vorcore::MethodDeclaration* m_method = nullptr;
};

}  // namespace cmpinsp::broker
