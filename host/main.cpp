#include "host/Diags.h"
#include "host/Process.h"

int main(int argc, char** argv) {
  return static_cast<int>(host::runDiags(host::commandLine(argc, argv)));
}
