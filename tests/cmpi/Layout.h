/* Defines `layout_<language>_<edition>`, and checks the layout as it is compiled. */
#include "cmpi/cmpi.h"
#include "cmpi/cmpilayout.h"
#include "tests/cmpi/Sizes.h"

#define JOIN_(language, edition) layout_##language##_##edition
#define JOIN(language, edition) JOIN_(language, edition)
#define LAYOUT JOIN(LANGUAGE, CMPI_VERSION)

#ifdef __cplusplus
extern "C"
#endif
    struct Sizes
    LAYOUT(void);

struct Sizes LAYOUT(void) {
  struct Sizes sizes;
  sizes.edition = CMPICurrentVersion;
  sizes.broker = (unsigned)sizeof(CMPIBroker);
  sizes.brokerTable = (unsigned)sizeof(CMPIBrokerFT);
  sizes.factoryTable = (unsigned)sizeof(CMPIBrokerEncFT);
  sizes.instanceTable = (unsigned)sizeof(CMPIInstanceFT);
  sizes.instanceInterface = (unsigned)sizeof(CMPIInstanceMIFT);
  sizes.data = (unsigned)sizeof(CMPIData);
  sizes.status = (unsigned)sizeof(CMPIStatus);
  return sizes;
}
