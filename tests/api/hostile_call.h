// Calls that no sound program makes: pictures whose headers lie, handles that are none, numbers and pointers of any
// kind.
#pragma once

#include "support/random.h"

namespace test {

// Makes one call of any export out of what `random` draws, and checks what holds for every call: a result that is a
// sound picture, or none and a status that says why; the caller's pictures unchanged; nothing left behind.
void MakeHostileCall(Random& random);

} // namespace test
