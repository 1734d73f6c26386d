// A host that links the runner: it prints the tests of the installation that it is given.
#include <iostream>

#include "diagsrunner/DiagsRunner.h"
#include "substitute/cmpi.nsp/Bootstrap.h"

int main(int, char** argv) {
  substitute::Installation installation;
  installation.root = argv[1];
  const substitute::Framework framework(installation);
  std::cout << DiagsRunner::GetDiagsRunner(framework.objectManager())->EnumerateDiagTests("")
            << std::endl;
  DiagsRunner::FreeDiagsRunner();
}
