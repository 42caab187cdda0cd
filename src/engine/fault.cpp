#include "fault.h"

namespace rainfold {

void ThrowFault(const char* message) {
    throw EngineFault(message);
}

} // namespace rainfold
