#include "base/version.h"

namespace tarvyle {

const char* const kVersion = TARVYLE_VERSION;

}  // namespace tarvyle
