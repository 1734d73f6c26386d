#pragma once

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

namespace NZELVOR20 {

class ICIMClass;
class ICIMInstance;
class ICIMProperty;
class INamespaceProvider;
class TCIMQualifierDecl;
class TCIMReference;

/// Receivers of an enumeration: each answers true to go on and false to stop. They are called on
/// the thread of the enumeration, and what they throw ends it and passes to its caller.
using TClassCallback = boost::function<bool(boost::shared_ptr<ICIMClass>)>;
using TInstanceCallback = boost::function<bool(boost::shared_ptr<ICIMInstance>)>;
using TPropertyCallback = boost::function<bool(boost::shared_ptr<ICIMProperty>)>;
using TProviderCallback = boost::function<bool(boost::shared_ptr<INamespaceProvider>)>;
using TQualifierDeclCallback = boost::function<bool(boost::shared_ptr<TCIMQualifierDecl>)>;
using TReferenceCallback = boost::function<bool(const TCIMReference&)>;

}  // namespace NZELVOR20
