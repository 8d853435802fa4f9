/// Signals by which the user or the system stops the program.
#ifndef VLVK_TOOLS_IO_INTERRUPT_H
#define VLVK_TOOLS_IO_INTERRUPT_H

#include <csignal>

namespace vlvk::tool {

/// From here on an interrupt prints an error line before it ends the program. One that is ignored (nohup) stays so.
void reportInterrupts();

/// Holds interrupts back, for what must be cleaned up before they take effect.
class InterruptPause {
 public:
  InterruptPause();
  ~InterruptPause();
  InterruptPause(const InterruptPause&) = delete;
  InterruptPause& operator=(const InterruptPause&) = delete;

  /// Whether an interrupt waits for the end of the pause.
  static bool isDue();

 private:
  sigset_t before_;
};

/// Throws Error where an interrupt is held back: what comes next would be in vain.
void failIfInterrupted();

}  // namespace vlvk::tool

#endif
