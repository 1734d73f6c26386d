#pragma once

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <string>
#include <utility>
#include <vector>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/manager/face/CmpiNamespace.h"
#include "substitute/cmpi.nsp/manager/face/ObjectManagerNamespace.h"
#include "substitute/cmpi.nsp/repository/ClassBuilder.h"
#include "substitute/cmpi.nsp/repository/MofParser.h"

namespace cmpinsp {

inline const char* zooSchema() {
  return R"(
    [Abstract] class ZOO_Being { [Key] string Name; };
    class ZOO_Animal : ZOO_Being {
      [ValueMap{"1", "2"}, Values{"Calm", "Angry"}] uint16 Mood = 1;
      uint8 Legs = 4;
      uint32 Feed([In] uint32 Grams, [In(false), Out] string Answer, [In, Out] uint16 Left);
      uint32 Sleep();
    };
    class ZOO_Cat : ZOO_Animal { };
    class ZOO_Dog : ZOO_Animal { };
    class ZOO_Keeper : ZOO_Being { uint16 Mood; };
    class ZOO_Robot : ZOO_Keeper { };
    class ZOO_Cage : ZOO_Being { ZOO_Animal REF Guest; };
    [Association] class ZOO_Cares {
      [Key] ZOO_Keeper REF Keeper;
      [Key] ZOO_Animal REF Animal;
    };
    [Association] class ZOO_Tends : ZOO_Cares {
      [Key, Override("Keeper")] ZOO_Robot REF Keeper;
    };
    class ZOO_Place : ZOO_Being { };
    [Association] class ZOO_Road : ZOO_Place { ZOO_Place REF From; };
    instance of ZOO_Cage { Name = "North"; Guest = "root/cimv2:ZOO_Cat.Name=\"Tom\""; };)";
}

inline Registration zooServes(const std::string& className, unsigned interfaces,
                              const std::string& nameSpace = "root/cimv2") {
  return {className, {nameSpace}, std::string(), std::string(), interfaces, {}};
}

/// Providers by name, with what they serve.
using ZooProviders = std::vector<std::pair<std::string, std::vector<Registration>>>;

inline ZooProviders wholeZoo() {
  return {{"Zoo_Animals",
           {zooServes("ZOO_Animal", kInstanceInterface),
            zooServes("ZOO_Cat", kInstanceInterface | kMethodInterface)}},
          {"Zoo_Dogs", {zooServes("ZOO_Dog", kInstanceInterface)}},
          {"Zoo_Keepers", {zooServes("ZOO_Keeper", kInstanceInterface)}},
          {"Zoo_Cares", {zooServes("ZOO_Cares", kAssociationInterface)}}};
}

/// The object manager over the providers of the test library, as the bootstrap would build it.
class Zoo {
 public:
  explicit Zoo(const ZooProviders& providers = wholeZoo(), const char* schema = zooSchema()) {
    std::vector<substitute::Problem> problems;
    const std::vector<CompilationUnit> units{parseMof("zoo.mof", schema, problems)};
    QualifierTable qualifiers;
    auto classes = boost::make_shared<ClassTable>();
    buildClasses(units, qualifiers, *classes, problems);
    std::vector<RegisteredProvider> registered;
    for (const auto& provider : providers) {
      registered.push_back({provider.first, "diagsZoo", {}, provider.second});
    }
    manager = boost::make_shared<ObjectManager>(classes, std::move(registered), ZOO_FOLDER);
    cmpi = boost::make_shared<CmpiNamespace>(manager, qualifiers);
    top = boost::make_shared<ObjectManagerNamespace>();
    top->AddUnderlyingNamespace(cmpi);
    manager->setStaticInstances(buildStaticInstances(units, *classes, top, problems, problems));
  }

  /// The names of the instances of a class, in the order of the answers.
  std::string namesOf(const std::string& className, bool deep = true,
                      const std::string& nameSpace = std::string()) const {
    std::string names;
    manager->enumerate({nameSpace, className, {}}, deep, nullptr, [&](const InstanceDataPtr& data) {
      const NZELVOR20::TCIMValue* name = data->find("Name");
      names += (name != nullptr ? name->ToString(10) : data->path.toText()) + " ";
      return true;
    });
    return names;
  }

  /// The code of what `call` throws; success when it throws nothing.
  template <typename Call>
  static NZELVOR20::EVORStatusCode codeOf(Call call) {
    try {
      call();
    } catch (const NZELVOR20::TVORException& error) {
      return error.GetStatus().GetStatusCode();
    }
    return NZELVOR20::eVORSuccess;
  }

  static ObjectPath path(const std::string& className, const std::string& name,
                         const std::string& nameSpace = "root/cimv2") {
    return {nameSpace, className, {{"Name", NZELVOR20::TCIMValue(name)}}};
  }

  boost::shared_ptr<ObjectManager> manager;
  boost::shared_ptr<CmpiNamespace> cmpi;
  boost::shared_ptr<ObjectManagerNamespace> top;
};

}  // namespace cmpinsp
