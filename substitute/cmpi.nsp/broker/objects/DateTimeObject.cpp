#include "substitute/cmpi.nsp/broker/objects/DateTimeObject.h"

#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"

namespace cmpinsp::broker {
namespace {

CMPIUint64 getBinaryFormat(const CMPIDateTime* dt, CMPIStatus* st) noexcept {
  return answer(st, CMPIUint64{0},
                [&] { return CMPIUint64{bodyOf<DateTimeBody>(dt).time.microseconds}; });
}

CMPIString* getStringFormat(const CMPIDateTime* dt, CMPIStatus* st) noexcept {
  return answer(st, static_cast<CMPIString*>(nullptr), [&] {
    Handle& handle = handleOf(dt, Kind::kDateTime);
    return childString(handle, bodyOf<DateTimeBody>(handle).time.text);
  });
}

CMPIBoolean isInterval(const CMPIDateTime* dt, CMPIStatus* st) noexcept {
  return answer(st, CMPI_false,
                [&] { return bodyOf<DateTimeBody>(dt).time.isInterval ? CMPI_true : CMPI_false; });
}

}  // namespace

const CMPIDateTimeFT kDateTimeTable = {CMPICurrentVersion,  release<DateTimeBody>,
                                       clone<DateTimeBody>, getBinaryFormat,
                                       getStringFormat,     isInterval};

}  // namespace cmpinsp::broker
