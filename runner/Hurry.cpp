#include "diagsrunner/Hurry.h"

#include "platform/Hurry.h"

void hurryDiagsRunner() noexcept { diagsrunner::platform::hurry(); }
