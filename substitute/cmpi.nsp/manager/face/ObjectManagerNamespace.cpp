#include "substitute/cmpi.nsp/manager/face/ObjectManagerNamespace.h"

#include <exception>
#include <set>
#include <utility>

#include "framework/ICIMClass.h"
#include "framework/INamespaceConsumer.h"
#include "framework/INamespaceProvider.h"
#include "framework/TCIMQualifierDecl.h"
#include "substitute/cmpi.nsp/manager/face/Failure.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

using namespace NZELVOR20;

namespace {

constexpr const char* kFamilyOption = "nspID";
constexpr const char* kAnyFamily = "plugin";

std::string familyOf(ICIMNamespace& ns) {
  const boost::shared_ptr<INamespaceProvider> provider = ns.GetNamespaceProvider(TOptionsMap());
  return provider ? provider->GetName() : std::string();
}

/// Failures that mean "ask the next one".
bool isUnknownHere(const TVORException& error) {
  const EVORStatusCode code = error.GetStatus().GetStatusCode();
  return code == eVORNotFound || code == eVORInvalidClass || code == eVORNotSupported ||
         code == eVORInvalidNamespace;
}

}  // namespace

std::vector<boost::shared_ptr<ICIMNamespace>> ObjectManagerNamespace::chosen(
    const TOptionsMap& options) const {
  const auto option = options.find(kFamilyOption);
  const std::string family =
      option == options.end() || option->second.IsNull() ? kAnyFamily : option->second.ToString(10);
  std::vector<boost::shared_ptr<ICIMNamespace>> handles;
  for (const Underlying& underlying : m_underlying) {
    if (family == kAnyFamily || underlying.family == family) handles.push_back(underlying.handle);
  }
  if (handles.empty()) throw failure(eVORNotFound, "no provider family \"" + family + "\"");
  return handles;
}

/// The answer of the first namespace that has one; the first refusal when none has.
template <typename Call>
auto ObjectManagerNamespace::first(const TOptionsMap& options, Call call) const {
  std::exception_ptr refusal;
  for (const boost::shared_ptr<ICIMNamespace>& ns : chosen(options)) {
    try {
      return call(*ns);
    } catch (const TVORException& error) {
      if (!isUnknownHere(error)) throw;
      if (!refusal) refusal = std::current_exception();
    }
  }
  std::rethrow_exception(refusal);
}

boost::shared_ptr<INamespaceProvider> ObjectManagerNamespace::GetNamespaceProvider(
    TOptionsMap options) {
  return first(options, [&](ICIMNamespace& ns) { return ns.GetNamespaceProvider(options); });
}

void ObjectManagerNamespace::SetUpcallNamespace(boost::shared_ptr<ICIMNamespace>) {
  throw failure(eVORNotSupported, "nothing lies above the object manager");
}

void ObjectManagerNamespace::AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> underlying) {
  if (!underlying) throw failure(eVORInvalidParameter, "an empty namespace");
  std::string family = familyOf(*underlying);
  underlying->SetUpcallNamespace(shared_from_this());
  m_underlying.push_back({std::move(family), std::move(underlying)});
}

boost::shared_ptr<ICIMClass> ObjectManagerNamespace::AllocateClass(std::string name,
                                                                   std::string superclass,
                                                                   TOptionsMap options) {
  return first(options,
               [&](ICIMNamespace& ns) { return ns.AllocateClass(name, superclass, options); });
}

boost::shared_ptr<ICIMClass> ObjectManagerNamespace::GetClass(std::string name,
                                                              TOptionsMap options) {
  return first(options, [&](ICIMNamespace& ns) {
    boost::shared_ptr<ICIMClass> found = ns.GetClass(name, options);
    if (!found) throw failure(eVORInvalidClass, name);
    return found;
  });
}

void ObjectManagerNamespace::EnumerateRootClasses(TClassCallback callback, TOptionsMap options) {
  std::set<std::string> seen;
  bool goOn = true;
  for (const boost::shared_ptr<ICIMNamespace>& ns : chosen(options)) {
    const auto take = [&](const boost::shared_ptr<ICIMClass>& root) {
      if (seen.insert(vorcore::nameKey(root->GetName())).second) goOn = callback(root);
      return goOn;
    };
    if (goOn) ns->EnumerateRootClasses(take, options);
  }
}

void ObjectManagerNamespace::EnumerateProviders(TProviderCallback callback, TOptionsMap options) {
  bool goOn = true;
  for (const boost::shared_ptr<ICIMNamespace>& ns : chosen(options)) {
    const auto take = [&](const boost::shared_ptr<INamespaceProvider>& provider) {
      return goOn = callback(provider);
    };
    if (goOn) ns->EnumerateProviders(take, options);
  }
}

boost::shared_ptr<TCIMQualifierDecl> ObjectManagerNamespace::AllocateQualifierDecl(
    std::string name, TOptionsMap options) {
  return first(options, [&](ICIMNamespace& ns) { return ns.AllocateQualifierDecl(name, options); });
}

boost::shared_ptr<TCIMQualifierDecl> ObjectManagerNamespace::GetQualifierDecl(std::string name,
                                                                              TOptionsMap options) {
  return first(options, [&](ICIMNamespace& ns) { return ns.GetQualifierDecl(name, options); });
}

void ObjectManagerNamespace::EnumerateQualifierDecls(TQualifierDeclCallback callback,
                                                     TOptionsMap options) {
  first(options, [&](ICIMNamespace& ns) { ns.EnumerateQualifierDecls(callback, options); });
}

void ObjectManagerNamespace::Subscribe(std::string language, std::string query,
                                       boost::shared_ptr<INamespaceConsumer> consumer,
                                       TOptionsMap options) {
  first(options, [&](ICIMNamespace& ns) { ns.Subscribe(language, query, consumer, options); });
}

boost::shared_ptr<ICIMInstance> ObjectManagerNamespace::GetInstance(TCIMReference reference,
                                                                    TOptionsMap options) {
  return first(options, [&](ICIMNamespace& ns) {
    boost::shared_ptr<ICIMInstance> found = ns.GetInstance(reference, options);
    if (!found) throw failure(eVORNotFound, reference.GetPath());
    return found;
  });
}

void ObjectManagerNamespace::DeleteInstance(TCIMReference reference, TOptionsMap options) {
  first(options, [&](ICIMNamespace& ns) { ns.DeleteInstance(reference, options); });
}

void ObjectManagerNamespace::ModifyInstance(boost::shared_ptr<ICIMInstance> instance,
                                            TOptionsMap options) {
  first(options, [&](ICIMNamespace& ns) { ns.ModifyInstance(instance, options); });
}

void ObjectManagerNamespace::ExecuteQuery(std::string language, std::string query,
                                          TInstanceCallback callback, TOptionsMap options) {
  first(options, [&](ICIMNamespace& ns) { ns.ExecuteQuery(language, query, callback, options); });
}

void ObjectManagerNamespace::ClearInstances(TOptionsMap options) {
  for (const boost::shared_ptr<ICIMNamespace>& ns : chosen(options)) ns->ClearInstances(options);
}

}  // namespace cmpinsp
