#pragma once

/// The broker speaks the newest edition; its tables serve every older one too.
#define CMPI_VERSION 210
#include "cmpi/cmpift.h"
#include "substitute/cmpi.nsp/broker/lifetime/Handle.h"

namespace cmpinsp::broker {

extern const CMPIContextFT kContextTable;
extern const CMPIResultFT kResultTable;
extern const CMPIStringFT kStringTable;
extern const CMPIArrayFT kArrayTable;
extern const CMPIEnumerationFT kEnumerationTable;
extern const CMPIInstanceFT kInstanceTable;
extern const CMPIObjectPathFT kObjectPathTable;
extern const CMPIArgsFT kArgsTable;
extern const CMPIDateTimeFT kDateTimeTable;
extern const CMPIErrorFT kErrorTable;
extern const CMPIPropertyListFT kPropertyListTable;
extern const CMPISelectExpFT kSelectExpTable;
extern const CMPISelectCondFT kSelectCondTable;
extern const CMPISubCondFT kSubCondTable;
extern const CMPIPredicateFT kPredicateTable;
extern const CMPIEnumerationFilterFT kEnumerationFilterTable;

extern const CMPIBrokerFT kBrokerTable;
extern const CMPIBrokerEncFT kBrokerEncTable;
extern const CMPIBrokerExtFT kBrokerExtTable;
extern const CMPIBrokerMemFT kBrokerMemTable;

/// The function table of the objects of `kind`; null for kinds without one.
const void* tableOf(Kind kind) noexcept;

}  // namespace cmpinsp::broker
