// Stack objects that carry one argument across the C boundary and write it back where the callee
// may change it. `ToC` holders stand on the calling C++ side, the others on the called one; writing
// back happens in destructors, so after the call and on every path.
#pragma once

#include "glue/object_holders.h"
#include "glue/string_holders.h"
#include "glue/value_holders.h"
