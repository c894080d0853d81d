// The wish to stop: Ctrl-C, or a signal that asks to end. The first one is noted, so that work can end in good order; a
// second one ends the program at once, and only temporary files go.
#ifndef QV8_PICTURES_INTERRUPT_H
#define QV8_PICTURES_INTERRUPT_H

// From now on it is noted.
void WatchForInterrupt();

bool Interrupted();

// Notes an interrupt, or forgets it.
void SetInterrupted(bool interrupted);

// Throws a Failure with kExitCancelled when an interrupt was noted.
void StopIfInterrupted();

#endif
