#include <cstring>
#include <limits>
#include <new>

#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"
#include "substitute/cmpi.nsp/broker/objects/Release.h"

namespace cmpinsp::broker {
namespace {

CMPIGcStat* mark(const CMPIBroker* broker, CMPIStatus* st) noexcept {
  return answer(st, static_cast<CMPIGcStat*>(nullptr), [&]() -> CMPIGcStat* {
    Broker& own = Broker::of(broker);
    innermostScope();
    // Closed by `release`, or with the scope around it.
    return new Scope(Scope::Reason::kMarked, &own);
  });
}

CMPIStatus releaseMark(const CMPIBroker* broker, const CMPIGcStat* gc) noexcept {
  return perform([&] {
    Broker::of(broker);
    Scope* scope = &innermostScope();
    while (scope != nullptr && scope->reason() == Scope::Reason::kMarked && scope != gc) {
      scope = scope->outer();
    }
    if (scope != gc || scope == nullptr || scope->reason() != Scope::Reason::kMarked) {
      throw Failure(CMPI_RC_ERR_INVALID_HANDLE, "this thread has no such mark");
    }
    delete scope;
  });
}

MemoryAccount& memoryOf(const CMPIBroker* broker) { return Broker::of(broker).library().memory(); }

/// Runs an allocation; null where there is no memory, or the arguments make no sense.
template <typename Operation>
auto allocated(const CMPIBroker* broker, Operation operation) noexcept {
  using Pointer = decltype(operation(MemoryAccount::common()));
  return answer(nullptr, Pointer{nullptr}, [&] { return operation(memoryOf(broker)); });
}

void* cmpiMalloc(const CMPIBroker* broker, std::size_t size) noexcept {
  return allocated(broker, [&](MemoryAccount& account) { return account.allocate(size); });
}

void* cmpiCalloc(const CMPIBroker* broker, std::size_t n, std::size_t size) noexcept {
  return allocated(broker, [&](MemoryAccount& account) {
    if (size != 0 && n > std::numeric_limits<std::size_t>::max() / size) throw std::bad_alloc();
    void* memory = account.allocate(n * size);
    std::memset(memory, 0, n * size);
    return memory;
  });
}

void* cmpiRealloc(const CMPIBroker* broker, void* p, std::size_t size) noexcept {
  return allocated(broker, [&](MemoryAccount& account) { return account.reallocate(p, size); });
}

char* cmpiStrDup(const CMPIBroker* broker, const char* str) noexcept {
  return allocated(broker, [&](MemoryAccount& account) {
    const std::size_t size = std::strlen(required(str, "the text")) + 1;
    auto* copy = static_cast<char*>(account.allocate(size));
    std::memcpy(copy, str, size);
    return copy;
  });
}

void cmpiFree(const CMPIBroker* broker, void* p) noexcept {
  perform([&] { memoryOf(broker).release(p); });
}

template <Kind kind, typename Object>
void freeObject(const CMPIBroker*, Object* object) noexcept {
  releaseObject(object, kind);
}

void freeChars(const CMPIBroker* broker, char* p) noexcept { cmpiFree(broker, p); }

}  // namespace

const CMPIBrokerMemFT kBrokerMemTable = {CMPICurrentVersion,
                                         mark,
                                         releaseMark,
                                         cmpiMalloc,
                                         cmpiCalloc,
                                         cmpiRealloc,
                                         cmpiStrDup,
                                         cmpiFree,
                                         freeObject<Kind::kInstance, CMPIInstance>,
                                         freeObject<Kind::kObjectPath, CMPIObjectPath>,
                                         freeObject<Kind::kArgs, CMPIArgs>,
                                         freeObject<Kind::kString, CMPIString>,
                                         freeObject<Kind::kArray, CMPIArray>,
                                         freeObject<Kind::kDateTime, CMPIDateTime>,
                                         freeObject<Kind::kSelectExp, CMPISelectExp>,
                                         freeChars};

}  // namespace cmpinsp::broker
