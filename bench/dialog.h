// What the progress dialog, which every caller gets who does not ask for another, adds to a short call and a long one.
#pragma once

namespace bench {

// Prints a line for each call. The calls with and without the dialog take turns.
void TimeDialog(int samples);

} // namespace bench
