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
/// is.
class MethodTypes {
 public:
  /// The method of the class of `target`; a path in an answer that names no namespace is in that of
  /// `target`.
  MethodTypes(Broker& broker, const ObjectPath& target, const std::string& method);

  /// What goes in. Throws `TVORException` (type mismatch) that names the parameter which does not
  /// fit.
  NamedValues fitted(const NamedValues& arguments) const;

  /// What came out. The method has done its work by then: an answer that does not fit stays as it
  /// came, with a line in the log. The text of a path is taken for a reference.
  NamedValues fittedOutputs(const NamedValues& outputs) const;
  NZELVOR20::TCIMValue fittedReturn(const NZELVOR20::TCIMValue& value) const;

 private:
  const vorcore::ParameterDeclaration* find(const std::string& parameter) const;
  NZELVOR20::TCIMValue fittedAnswer(const NZELVOR20::TCIMValue& value, NZELVOR20::ECIMType type,
                                    bool isArray, const std::string& what) const;
  NZELVOR20::TCIMValue referenceIn(const std::string& text) const;

  Broker& m_broker;
  std::string m_nameSpace;
  std::string m_where;  ///< for messages
  boost::shared_ptr<const ClassShape> m_shape;
  const vorcore::MethodDeclaration* m_method = nullptr;
};

}  // namespace cmpinsp::broker
