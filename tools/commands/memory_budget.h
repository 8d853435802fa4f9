/// How much memory several workers take together.
#ifndef VLVK_TOOLS_COMMANDS_MEMORY_BUDGET_H
#define VLVK_TOOLS_COMMANDS_MEMORY_BUDGET_H

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace vlvk::tool {

/// Bytes that workers may have in use at once. What is larger than all of it has it alone.
class MemoryBudget {
 public:
  /// 4 GiB, or half of the machine's memory where that is less.
  MemoryBudget();

  /// A part of the budget, taken while this lives.
  class Share {
   public:
    /// Waits until there is room.
    Share(MemoryBudget* budget, std::uint64_t bytes);
    Share(const Share&) = delete;
    Share& operator=(const Share&) = delete;
    ~Share();

   private:
    MemoryBudget* budget_;
    std::uint64_t bytes_;
  };

 private:
  std::uint64_t limit_;
  std::uint64_t used_ = 0;
  std::mutex mutex_;
  std::condition_variable released_;
};

}  // namespace vlvk::tool

#endif
