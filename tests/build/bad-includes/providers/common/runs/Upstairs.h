#include "providers/common/model/DiagnosticModel.h"
