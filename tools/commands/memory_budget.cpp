/// See memory_budget.h.
#include "tools/commands/memory_budget.h"

#include <unistd.h>

#include <algorithm>

namespace vlvk::tool {
namespace {

constexpr std::uint64_t kMost = std::uint64_t{4} << 30;

std::uint64_t machineMemory() {
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long pageSize = ::sysconf(_SC_PAGESIZE);
  if (pages <= 0 || pageSize <= 0) return kMost;
  return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize);
}

}  // namespace

MemoryBudget::MemoryBudget() : limit_(std::min(kMost, machineMemory() / 2)) {}

MemoryBudget::Share::Share(MemoryBudget* budget, std::uint64_t bytes)
    : budget_(budget), bytes_(std::min(bytes, budget->limit_)) {
  std::unique_lock lock(budget_->mutex_);
  budget_->released_.wait(lock, [this] { return budget_->limit_ - budget_->used_ >= bytes_; });
  budget_->used_ += bytes_;
}

MemoryBudget::Share::~Share() {
  {
    const std::lock_guard lock(budget_->mutex_);
    budget_->used_ -= bytes_;
  }
  budget_->released_.notify_all();
}

}  // namespace vlvk::tool
