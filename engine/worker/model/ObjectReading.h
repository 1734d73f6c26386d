#pragma once

#include <boost/shared_ptr.hpp>
#include <functional>
#include <string>

#include "framework/ICIMInstance.h"
#include "framework/ICIMNamespace.h"
#include "framework/TCIMReference.h"
#include "framework/TCIMValue.h"

/// Reading the object model without a stumble over what providers leave out.
namespace engine::worker {

using Objects = boost::shared_ptr<NZELVOR20::ICIMNamespace>;
using InstancePtr = boost::shared_ptr<NZELVOR20::ICIMInstance>;

/// The property's value; null where the instance has no such property.
NZELVOR20::TCIMValue valueOf(const InstancePtr& instance, const char* name);

/// The value for display; empty where it is null.
std::string textOf(const InstancePtr& instance, const char* name);

/// An unsigned number of any width; `otherwise` where there is none.
std::uint64_t numberOf(const InstancePtr& instance, const char* name, std::uint64_t otherwise);

/// The instance at the end of an association. Throws `TVORException` or `std::runtime_error` where
/// there is none.
InstancePtr endOf(const Objects& objects, const InstancePtr& association, const char* role);

/// Hands each instance of the class and of those below it to `take`; nothing where the class is
/// unknown. Throws what the enumeration does.
void forEach(const Objects& objects, const char* className,
             const std::function<void(const InstancePtr&)>& take);

/// Both name the same object: class and keys, whatever namespace they write.
bool sameObject(const NZELVOR20::TCIMReference& left, const NZELVOR20::TCIMReference& right);

/// Whether the class is `ancestor` or one below it.
bool isBelow(const boost::shared_ptr<NZELVOR20::ICIMClass>& theClass, const char* ancestor);

}  // namespace engine::worker
