// The user's wish to stop: Ctrl-C. The first one is noted, so that work can end in good order; a second one ends the
// program at once.
#ifndef QV8_TOOL_INTERRUPT_H
#define QV8_TOOL_INTERRUPT_H

// From now on Ctrl-C is noted.
void WatchForInterrupt();

bool Interrupted();

// Notes an interrupt, or forgets it.
void SetInterrupted(bool interrupted);

// Throws a Failure with kExitCancelled when an interrupt was noted.
void StopIfInterrupted();

#endif
