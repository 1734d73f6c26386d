#include "substitute/cmpi.nsp/broker/objects/ArgsObject.h"

#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"

namespace cmpinsp::broker {
namespace {

CMPIStatus addArg(const CMPIArgs* args, const char* name, const CMPIValue* value,
                  const CMPIType type) noexcept {
  return perform([&] {
    ArgsBody& body = bodyOf<ArgsBody>(args);
    setNamed(body.values, required(name, "the argument's name"), readValue(value, type));
  });
}

CMPIData getArg(const CMPIArgs* args, const char* name, CMPIStatus* st) noexcept {
  return answer(st, kNoData, [&] {
    Handle& handle = handleOf(args, Kind::kArgs);
    return namedData(handle, bodyOf<ArgsBody>(handle).values, name);
  });
}

CMPIData getArgAt(const CMPIArgs* args, CMPICount index, CMPIString** name,
                  CMPIStatus* st) noexcept {
  return answer(st, kNoData, [&] {
    Handle& handle = handleOf(args, Kind::kArgs);
    return namedDataAt(handle, bodyOf<ArgsBody>(handle).values, index, name);
  });
}

CMPICount getArgCount(const CMPIArgs* args, CMPIStatus* st) noexcept {
  return answer(st, CMPICount{0},
                [&] { return static_cast<CMPICount>(bodyOf<ArgsBody>(args).values.size()); });
}

}  // namespace

const CMPIArgsFT kArgsTable = {
    CMPICurrentVersion, release<ArgsBody>, clone<ArgsBody>, addArg, getArg, getArgAt, getArgCount};

}  // namespace cmpinsp::broker
