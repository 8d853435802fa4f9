/// What the engine asks of a system's scheduler, where there is a way to ask.
#ifndef VLVK_ENGINE_PROCESSORS_H
#define VLVK_ENGINE_PROCESSORS_H

namespace vlvk {

/// The processor that the calling thread runs on; -1: unknown.
int ownProcessor();

/// The calling thread's number at the system; 0: it has none.
int ownThreadNumber();

/// Lets a thread run on the processors that the calling one may use, but for `processor`. Does nothing where no other
/// would be left, or the system refuses.
void keepOff(int threadNumber, int processor);

}  // namespace vlvk

#endif
