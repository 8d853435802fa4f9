/// See interrupt.h.
#include "tools/io/interrupt.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

constexpr int kInterrupts[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXCPU};

bool isIgnored(int signal) {
  struct sigaction action {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

// The signal is sent again, and ends the program as if it had never been handled: shells want to see that.
void onInterrupt(int signal) {
  static constexpr char kLine[] = "vlvk-makeup: interrupted\n";
  [[maybe_unused]] const ssize_t count = ::write(STDERR_FILENO, kLine, sizeof kLine - 1);
  std::raise(signal);
}

}  // namespace

void reportInterrupts() {
  struct sigaction action {};
  action.sa_handler = onInterrupt;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int signal : kInterrupts) {
    if (!isIgnored(signal)) sigaction(signal, &action, nullptr);
  }
}

InterruptPause::InterruptPause() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : kInterrupts)
    sigaddset(&signals, signal);
  pthread_sigmask(SIG_BLOCK, &signals, &before_);
}

InterruptPause::~InterruptPause() {
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

// An ignored signal is pending too while it is blocked.
bool InterruptPause::isDue() {
  sigset_t pending;
  sigpending(&pending);
  return std::any_of(std::begin(kInterrupts), std::end(kInterrupts),
                     [&pending](int signal) { return sigismember(&pending, signal) == 1 && !isIgnored(signal); });
}

void failIfInterrupted() {
  if (InterruptPause::isDue()) throw Error("interrupted");
}

}  // namespace vlvk::tool
