#include <cstdio>
#include <exception>
#include <string>

#include "framework/ICIMClass.h"
#include "framework/ICIMNamespace.h"
#include "framework/TCIMReference.h"
#include "substitute/cmpi.nsp/Bootstrap.h"

/// The process whose whole life `cold_start_bench` measures: it brings the framework up and prints
/// its first answer, the name of a test that a provider offers.
///
/// usage: cold_start ROOT [CACHE]     CACHE is the folder of the schema's cache; without, no cache
int main(int argc, char** argv) {
  if (argc < 2) return 2;
  substitute::Installation installation;
  installation.root = argv[1];
  installation.schemaCache = argc > 2;
  if (argc > 2) installation.cacheFolder = argv[2];
  try {
    const substitute::Framework framework(installation);
    std::string answer;
    framework.objectManager()
        ->GetClass("DIAGS_MemoryTest", {})
        ->EnumerateInstanceNames(
            [&](const NZELVOR20::TCIMReference& name) {
              answer = name.GetPath();
              return false;
            },
            false, {});
    std::puts(answer.c_str());
    return answer.empty() || !framework.problems().empty() ? 1 : 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "cold_start: %s\n", failure.what());
    return 1;
  }
}
