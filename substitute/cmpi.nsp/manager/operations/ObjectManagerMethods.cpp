#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/manager/operations/ObjectManager.h"

namespace cmpinsp {

namespace {

using NZELVOR20::TCIMValue;
using vorcore::MethodDeclaration;
using vorcore::ParameterDeclaration;

const ParameterDeclaration* findParameter(const MethodDeclaration& method,
                                          const std::string& name) {
  for (const ParameterDeclaration& parameter : method.parameters) {
    if (vorcore::equalNames(parameter.name, name)) return &parameter;
  }
  return nullptr;
}

/// The arguments in the types and the order that the method declares; a wrong type is refused (type
/// mismatch), an undeclared parameter passes as it is.
Arguments declaredArguments(const MethodDeclaration& method, const Arguments& given) {
  Arguments arguments;
  for (const ParameterDeclaration& parameter : method.parameters) {
    for (const auto& argument : given) {
      if (!vorcore::equalNames(argument.first, parameter.name)) continue;
      arguments.emplace_back(
          parameter.name, vorcore::convertTo(argument.second, parameter.type, parameter.isArray));
    }
  }
  for (const auto& argument : given) {
    if (findParameter(method, argument.first) == nullptr) arguments.push_back(argument);
  }
  return arguments;
}

TCIMValue convertedIfPossible(const TCIMValue& value, NZELVOR20::ECIMType type, bool isArray) {
  try {
    return vorcore::convertTo(value, type, isArray);
  } catch (const NZELVOR20::TVORException&) {
    return value;
  }
}

/// What counts as output: nothing that is declared for input alone, in the declared types.
Arguments declaredOutput(const MethodDeclaration& method, Arguments returned) {
  Arguments output;
  for (auto& argument : returned) {
    const ParameterDeclaration* parameter = findParameter(method, argument.first);
    if (parameter == nullptr) {
      output.push_back(std::move(argument));
    } else if (parameter->isOut) {
      output.emplace_back(parameter->name, convertedIfPossible(argument.second, parameter->type,
                                                               parameter->isArray));
    }
  }
  return output;
}

NZELVOR20::TVORException methodNotFound(const std::string& className, const std::string& method,
                                        const char* reason) {
  return NZELVOR20::TVORException(
      NZELVOR20::TVORStatusCode(NZELVOR20::eVORMethodNotFound, className + "." + method + reason));
}

}  // namespace

TCIMValue ObjectManager::invokeMethod(const ObjectPath& path, const std::string& method,
                                      const Arguments& in, Arguments& out) {
  requireClass(path.className);
  const vorcore::ClassDeclarationPtr declaration = m_classes->find(path.className);
  const MethodDeclaration* declared = declaration ? declaration->findMethod(method) : nullptr;
  const Arguments arguments = declared != nullptr ? declaredArguments(*declared, in) : in;
  const std::string& name = declared != nullptr ? declared->name : method;

  const std::vector<Route> routes =
      router()->towardsInstance(path.className, path.nameSpace, kMethodInterface);
  const bool isUndeclared = declaration && declared == nullptr;
  if (routes.empty()) {
    throw methodNotFound(path.className, method, isUndeclared ? "" : ", which no provider serves");
  }
  const Route& route = routes.front();
  if (isUndeclared) {
    logLine(kWarningLevel, "Object manager: method " + path.className + "." + method +
                               " is not declared; provider " + route.provider->registration().name +
                               " gets the call as it is");
  }
  ObjectPath asked = typed(path);
  asked.nameSpace = route.nameSpace;
  Arguments returned;
  TCIMValue answer = route.provider->get().invokeMethod(asked, name, arguments, returned);
  if (declared == nullptr) {
    out = std::move(returned);
    return answer;
  }
  out = declaredOutput(*declared, std::move(returned));
  return convertedIfPossible(answer, declared->returnType, false);
}

}  // namespace cmpinsp
