#include "substitute/cmpi.nsp/broker/objects/ContextObject.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <utility>

#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"
#include "substitute/cmpi.nsp/broker/text/Text.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp::broker {

using NZELVOR20::TCIMValue;

namespace {

/// Guards whose a context is. Providers start several threads with one and release it meanwhile,
/// and it must go to one owner alone.
std::mutex& contextMutex() {
  static auto* const mutex = new std::mutex;
  return *mutex;
}

/// The name of the user; null without one.
#if defined(_WIN32)
const wchar_t* userName() noexcept { return _wgetenv(L"USERNAME"); }
#else
const char* userName() noexcept { return std::getenv("USER"); }
#endif

/// The user on whose behalf the process runs: there is no remote caller here.
std::string principal() {
  const auto* const name = userName();
  return name == nullptr ? "local" : std::filesystem::path(name).u8string();
}

/// The entries that are the same in every call. They are never destroyed: a host may clean its
/// providers up as late as in its own static destructors.
const NamedValues& commonEntries() {
  static const auto* const entries = new NamedValues{{CMPIInvocationFlags, TCIMValue::Uint32(0)},
                                                     {CMPIPrincipal, TCIMValue(principal())},
                                                     {CMPIRole, TCIMValue("")},
                                                     {CMPIAcceptLanguage, TCIMValue("")},
                                                     {CMPIContentLanguage, TCIMValue("")}};
  return *entries;
}

CMPIData pointerData(const CMPIValuePtr& pointer) {
  CMPIData data{};
  data.type = CMPI_ptr;
  data.value.dataPtr = pointer;
  return data;
}

template <typename Entries>
void removeEntry(Entries& entries, const std::string& name) {
  const auto isIt = [&](const auto& entry) { return vorcore::equalNames(entry.first, name); };
  entries.erase(std::remove_if(entries.begin(), entries.end(), isIt), entries.end());
}

void setPointer(ContextBody& body, const char* name, const CMPIValue* value) {
  CMPIValuePtr pointer{};
  if (value != nullptr) std::memcpy(&pointer, value, sizeof pointer);
  std::string kept = repaired(name);
  for (auto& known : body.pointers) {
    if (!vorcore::equalNames(known.first, kept)) continue;
    known.second = pointer;
    return;
  }
  body.pointers.emplace_back(std::move(kept), pointer);
}

CMPIStatus releaseContext(CMPIContext* context) noexcept {
  const std::lock_guard<std::mutex> lock(contextMutex());
  return releaseObject(context, Kind::kContext);
}

CMPIData getEntry(const CMPIContext* ctx, const char* name, CMPIStatus* st) noexcept {
  return answer(st, kNoData, [&] {
    Handle& handle = handleOf(ctx, Kind::kContext);
    const ContextBody& body = bodyOf<ContextBody>(handle);
    const std::string wanted = repaired(required(name, "the entry's name"));
    for (const auto& pointer : body.pointers) {
      if (vorcore::equalNames(pointer.first, wanted)) return pointerData(pointer.second);
    }
    return namedData(handle, body.entries, name);
  });
}

CMPIData getEntryAt(const CMPIContext* ctx, CMPICount index, CMPIString** name,
                    CMPIStatus* st) noexcept {
  return answer(st, kNoData, [&] {
    Handle& handle = handleOf(ctx, Kind::kContext);
    const ContextBody& body = bodyOf<ContextBody>(handle);
    const std::size_t values = body.entries.size();
    if (index < values || index - values >= body.pointers.size()) {
      return namedDataAt(handle, body.entries, index, name);
    }
    const auto& pointer = body.pointers[index - values];
    if (name != nullptr) *name = childString(handle, pointer.first);
    return pointerData(pointer.second);
  });
}

CMPICount getEntryCount(const CMPIContext* ctx, CMPIStatus* st) noexcept {
  return answer(st, CMPICount{0}, [&] {
    const ContextBody& body = bodyOf<ContextBody>(ctx);
    return static_cast<CMPICount>(body.entries.size() + body.pointers.size());
  });
}

CMPIStatus addEntry(const CMPIContext* ctx, const char* name, const CMPIValue* value,
                    const CMPIType type) noexcept {
  return perform([&] {
    ContextBody& body = bodyOf<ContextBody>(ctx);
    required(name, "the entry's name");
    // A name has one entry, of whatever sort it was before.
    if (type == CMPI_ptr) {
      setPointer(body, name, value);
      removeEntry(body.entries, repaired(name));
    } else {
      setNamed(body.entries, name, readValue(value, type));
      removeEntry(body.pointers, repaired(name));
    }
  });
}

}  // namespace

ContextBody::ContextBody(const std::string& nameSpace) {
  entries.reserve(commonEntries().size() + 1);
  entries.emplace_back(CMPIInitNameSpace, TCIMValue(nameSpace));
  entries.insert(entries.end(), commonEntries().begin(), commonEntries().end());
}

bool addAttached(Handle& context) noexcept {
  const std::lock_guard<std::mutex> lock(contextMutex());
  if (!context.alive.load()) return false;
  int& attached = bodyOf<ContextBody>(context).attachedThreads;
  if (attached == 0 && context.ownership != Ownership::kCloned) return false;
  context.ownership = Ownership::kBorrowed;
  ++attached;
  return true;
}

void removeAttached(Handle& context) noexcept {
  const std::lock_guard<std::mutex> lock(contextMutex());
  if (--bodyOf<ContextBody>(context).attachedThreads == 0) destroy(context);
}

const CMPIContextFT kContextTable = {
    CMPICurrentVersion, releaseContext, clone<ContextBody>, getEntry, getEntryAt,
    getEntryCount,      addEntry};

}  // namespace cmpinsp::broker
