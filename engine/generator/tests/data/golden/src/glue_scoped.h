// Generated from the interface facts. Do not edit.
#pragma once

#include "glue/glue.h"

namespace engine_glue {

}  // namespace engine_glue
