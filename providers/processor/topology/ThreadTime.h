#pragma once

namespace providers {

/// The seconds that the calling thread has had a processor for itself.
double threadSeconds();

}  // namespace providers
