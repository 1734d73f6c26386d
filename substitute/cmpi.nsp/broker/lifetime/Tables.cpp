#include "substitute/cmpi.nsp/broker/lifetime/Tables.h"

#include "cmpi/cmpilayout.h"

namespace cmpinsp::broker {

const void* tableOf(Kind kind) noexcept {
  switch (kind) {
    case Kind::kContext:
      return &kContextTable;
    case Kind::kResult:
      return &kResultTable;
    case Kind::kString:
      return &kStringTable;
    case Kind::kArray:
      return &kArrayTable;
    case Kind::kEnumeration:
      return &kEnumerationTable;
    case Kind::kInstance:
      return &kInstanceTable;
    case Kind::kObjectPath:
      return &kObjectPathTable;
    case Kind::kArgs:
      return &kArgsTable;
    case Kind::kDateTime:
      return &kDateTimeTable;
    case Kind::kError:
      return &kErrorTable;
    case Kind::kPropertyList:
      return &kPropertyListTable;
    case Kind::kSelectExp:
      return &kSelectExpTable;
    case Kind::kSelectCond:
      return &kSelectCondTable;
    case Kind::kSubCond:
      return &kSubCondTable;
    case Kind::kPredicate:
      return &kPredicateTable;
    case Kind::kEnumerationFilter:
      return &kEnumerationFilterTable;
    case Kind::kMutex:
    case Kind::kCondition:
    case Kind::kThread:
      break;
  }
  return nullptr;
}

const char* nameOf(Kind kind) noexcept {
  static constexpr const char* kNames[kKindCount] = {"CMPIContext",
                                                     "CMPIResult",
                                                     "CMPIString",
                                                     "CMPIArray",
                                                     "CMPIEnumeration",
                                                     "CMPIInstance",
                                                     "CMPIObjectPath",
                                                     "CMPIArgs",
                                                     "CMPIDateTime",
                                                     "CMPIError",
                                                     "CMPIPropertyList",
                                                     "CMPISelectExp",
                                                     "CMPISelectCond",
                                                     "CMPISubCond",
                                                     "CMPIPredicate",
                                                     "CMPIEnumerationFilter",
                                                     "mutex",
                                                     "condition",
                                                     "thread"};
  return kNames[static_cast<std::size_t>(kind)];
}

}  // namespace cmpinsp::broker
