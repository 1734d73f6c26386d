#include "engine/answers/AnswerJson.h"

#include <chrono>
#include <nlohmann/json.hpp>

#include "text/SafeJson.h"

namespace engine {
namespace {

using Json = nlohmann::ordered_json;

const char* nameOf(Weight weight) {
  if (weight == Weight::kNote) return "note";
  return weight == Weight::kWarning ? "warning" : "fault";
}

Json unusableOf(const Circumstances& circumstances) {
  Json all = Json::array();
  for (const UnusableProvider& one : circumstances.unusable) {
    all.push_back({{"name", one.name}, {"state", one.state}, {"reason", one.reason}});
  }
  return all;
}

Json findingsOf(const Circumstances& circumstances) {
  Json all = Json::array();
  for (const Finding& one : circumstances.findings) {
    all.push_back({{"weight", nameOf(one.weight)}, {"text", one.text}});
  }
  return all;
}

Json settingOf(const SettingDeclaration& setting) {
  Json json{{"name", setting.name},
            {"type", setting.type},
            {"value", setting.value},
            {"description", setting.description}};
  if (setting.minimum) json["minimum"] = *setting.minimum;
  if (setting.maximum) json["maximum"] = *setting.maximum;
  return json;
}

Json testOf(const OfferedTest& test) {
  Json settings = Json::array();
  for (const auto& setting : test.settings) settings.push_back(settingOf(setting));
  return {{"identifier", test.identifier},
          {"service", test.service},
          {"device", test.device},
          {"element", test.element},
          {"serviceClass", test.serviceClass},
          {"estimate", test.estimate},
          {"exclusive", test.characteristics.isExclusive},
          {"interactive", test.characteristics.isInteractive},
          {"destructive", test.characteristics.isDestructive},
          {"risky", test.characteristics.isRisky},
          {"settings", std::move(settings)}};
}

Json providerOf(const ProviderFacts& provider) {
  Json classes = Json::array();
  for (const auto& one : provider.classes) {
    classes.push_back({{"name", one.name}, {"namespaces", one.namespaces}});
  }
  Json interfaces = Json::array();
  for (const auto& one : provider.interfaces) {
    interfaces.push_back({{"name", one.name}, {"edition", one.edition}});
  }
  return {{"name", provider.name},         {"library", provider.library},
          {"state", provider.state},       {"reason", provider.reason},
          {"classes", std::move(classes)}, {"interfaces", std::move(interfaces)}};
}

Json preparedOf(const PreparedGroup& group, const PreparedTest& test, const OfferedTest& offered) {
  return {{"identifier", offered.identifier},
          {"group", group.name},
          {"repeat", test.repeat},
          {"estimate", test.estimate},
          {"timeout", std::chrono::duration<double>(test.timeout).count()}};
}

std::string textOf(const Json& json) {
  return text::safeJson(json.dump(2, ' ', false, Json::error_handler_t::replace));
}

}  // namespace

std::string jsonOf(const Inventory& inventory) {
  Json tests = Json::array();
  for (const OfferedTest& test : inventory.tests) tests.push_back(testOf(test));
  return textOf({{"tests", std::move(tests)},
                 {"unusableProviders", unusableOf(inventory.circumstances)},
                 {"findings", findingsOf(inventory.circumstances)}});
}

std::string jsonOf(const ProvidersAnswer& answer) {
  Json providers = Json::array();
  for (const auto& provider : answer.providers) providers.push_back(providerOf(provider));
  return textOf({{"providers", std::move(providers)},
                 {"leftOut", unusableOf(answer.circumstances)},
                 {"findings", findingsOf(answer.circumstances)}});
}

std::string jsonOf(const CheckAnswer& answer) {
  return textOf({{"faultless", answer.isFaultless},
                 {"findings", findingsOf(answer.circumstances)},
                 {"leftOut", unusableOf(answer.circumstances)}});
}

std::string jsonOf(const PreparedPlan& plan, const std::vector<OfferedTest>& offer) {
  Json tests = Json::array();
  for (const PreparedGroup& group : plan.groups) {
    for (const PreparedTest& test : group.tests)
      tests.push_back(preparedOf(group, test, offer[test.test]));
  }
  Json skipped = Json::array();
  for (const SkippedTest& one : plan.skipped)
    skipped.push_back({{"identifier", offer[one.test].identifier}, {"reason", one.reason}});
  return textOf({{"tests", std::move(tests)}, {"skipped", std::move(skipped)}});
}

}  // namespace engine
