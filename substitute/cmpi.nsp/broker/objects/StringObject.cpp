#include "substitute/cmpi.nsp/broker/objects/StringObject.h"

#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"
#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/text/Codepages.h"
#include "substitute/cmpi.nsp/broker/text/Text.h"

namespace cmpinsp::broker {

namespace {

bool isSameText(const Body& old, const Body& made) noexcept {
  const auto& first = static_cast<const StringBody&>(old);
  const auto& second = static_cast<const StringBody&>(made);
  return first.length() == second.length() &&
         std::memcmp(first.text(), second.text(), first.length()) == 0;
}

}  // namespace

Handle& makeChildString(Handle& parent, const char* text, std::size_t length) {
  auto body = std::make_unique<StringBody>(std::string(text, length));
  return makeChildOnce(parent, Kind::kString, std::move(body), isSameText);
}

CMPIString* makeString(const char* text) {
  auto body = std::make_unique<StringBody>(repaired(text == nullptr ? "" : text));
  return makeObject(Ownership::kScoped, currentBroker(), std::move(body));
}

std::string textOrNothing(const CMPIString* string) {
  const Handle* handle = findLive(string);
  if (handle == nullptr || handle->kind != Kind::kString) return std::string();
  return bodyOf<StringBody>(*handle).copy();
}

namespace {

const char* getCharPtr(const CMPIString* str, CMPIStatus* st) noexcept {
  return answer(st, static_cast<const char*>(nullptr),
                [&] { return static_cast<const char*>(bodyOf<StringBody>(str).text()); });
}

char* newCharsCP(const CMPIString* str, const CMPICodepageID cpid, CMPIStatus* st) noexcept {
  return answer(st, static_cast<char*>(nullptr), [&] {
    const Handle& handle = handleOf(str, Kind::kString);
    const std::string bytes = encode(bodyOf<StringBody>(handle).copy(), numberOf(cpid));
    MemoryAccount& account =
        handle.broker == nullptr ? MemoryAccount::common() : handle.broker->library().memory();
    auto* copy = static_cast<char*>(account.allocate(bytes.size()));
    std::memcpy(copy, bytes.data(), bytes.size());
    return copy;
  });
}

}  // namespace

const CMPIStringFT kStringTable = {CMPICurrentVersion, release<StringBody>, clone<StringBody>,
                                   getCharPtr, newCharsCP};

}  // namespace cmpinsp::broker
