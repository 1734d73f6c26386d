#pragma once

#include "engine/protocol/Messages.h"

/// The members of every message, once for both directions: an archive is called with the name and
/// the place of each.
namespace engine {

template <class Archive>
void fields(Archive& archive, InstallationOptions& options) {
  archive("root", options.root);
  archive("logFile", options.logFile);
  archive("logLevel", options.logLevel);
  archive("biosId", options.biosId);
  archive("schemaCache", options.schemaCache);
  archive("withoutProviders", options.withoutProviders);
}

template <class Archive>
void fields(Archive& archive, Request& request) {
  archive("task", request.task);
  archive("installation", request.installation);
  archive("test", request.test);
  archive("settings", request.settings);
  archive("threadedMinutes", request.threadedMinutes);
  archive("className", request.className);
  archive("logLevel", request.logLevel);
  archive("wantsFacts", request.wantsFacts);
}

template <class Archive>
void fields(Archive&, Stop&) {}

template <class Archive>
void fields(Archive& archive, Hello& hello) {
  archive("version", hello.version);
}

template <class Archive>
void fields(Archive& archive, Entered& entered) {
  archive("provider", entered.provider);
  archive("operation", entered.operation);
}

template <class Archive>
void fields(Archive& archive, Characteristics& characteristics) {
  archive("exclusive", characteristics.isExclusive);
  archive("interactive", characteristics.isInteractive);
  archive("destructive", characteristics.isDestructive);
  archive("risky", characteristics.isRisky);
}

template <class Archive>
void fields(Archive& archive, SettingDeclaration& setting) {
  archive("name", setting.name);
  archive("type", setting.type);
  archive("value", setting.value);
  archive("description", setting.description);
  archive("minimum", setting.minimum);
  archive("maximum", setting.maximum);
}

template <class Archive>
void fields(Archive& archive, OfferedTest& test) {
  archive("identifier", test.identifier);
  archive("service", test.service);
  archive("device", test.device);
  archive("element", test.element);
  archive("serviceClass", test.serviceClass);
  archive("isMemoryTest", test.isMemoryTest);
  archive("estimate", test.estimate);
  archive("characteristics", test.characteristics);
  archive("settings", test.settings);
}

template <class Archive>
void fields(Archive& archive, UnusableProvider& provider) {
  archive("name", provider.name);
  archive("state", provider.state);
  archive("reason", provider.reason);
}

template <class Archive>
void fields(Archive& archive, Part& part) {
  archive("kind", part.kind);
  archive("name", part.name);
  archive("location", part.location);
  archive("manufacturer", part.manufacturer);
  archive("model", part.model);
  archive("version", part.version);
  archive("serial", part.serial);
}

template <class Archive>
void fields(Archive& archive, Identity& identity) {
  archive("host", identity.host);
  archive("firmware", identity.firmware);
  archive("parts", identity.parts);
}

template <class Archive>
void fields(Archive& archive, ProviderFacts::Class& served) {
  archive("name", served.name);
  archive("namespaces", served.namespaces);
}

template <class Archive>
void fields(Archive& archive, ProviderFacts::Interface& served) {
  archive("name", served.name);
  archive("edition", served.edition);
}

template <class Archive>
void fields(Archive& archive, ProviderFacts& provider) {
  archive("name", provider.name);
  archive("library", provider.library);
  archive("state", provider.state);
  archive("reason", provider.reason);
  archive("classes", provider.classes);
  archive("interfaces", provider.interfaces);
}

template <class Archive>
void fields(Archive& archive, Finding& finding) {
  archive("weight", finding.weight);
  archive("text", finding.text);
}

template <class Archive>
void fields(Archive& archive, Listing& listing) {
  archive("text", listing.text);
}

template <class Archive>
void fields(Archive& archive, AnswerLine& line) {
  archive("name", line.name);
  archive("value", line.value);
}

template <class Archive>
void fields(Archive& archive, Crashed& crashed) {
  archive("code", crashed.code);
  archive("provider", crashed.provider);
  archive("operation", crashed.operation);
  archive("libraries", crashed.libraries);
  archive("processor", crashed.processor);
}

template <class Archive>
void fields(Archive& archive, Done& done) {
  archive("status", done.status);
  archive("text", done.text);
}

/// The last value of each enumeration.
inline constexpr Task lastOf(Task) { return Task::kCheck; }
inline constexpr Weight lastOf(Weight) { return Weight::kFault; }
inline constexpr DoneStatus lastOf(DoneStatus) { return DoneStatus::kOutOfMemory; }

}  // namespace engine
