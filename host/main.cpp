#include "host/Diags.h"
#include "host/MemoryWatch.h"
#include "host/Process.h"

int main(int argc, char** argv) {
  host::watchMemory();
  return static_cast<int>(host::runDiags(host::commandLine(argc, argv)));
}
