#include "engine/worker/Worker.h"
#include "engine/worker/guard/Keeper.h"

int main() {
  engine::guard::stayKept();
  return engine::serve();
}
