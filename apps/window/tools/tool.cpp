#include "tools/tool.h"

bool Tool::Key(int /*virtualKey*/) {
    return false;
}
