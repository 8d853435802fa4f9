/// See several_files.h.
#include "tools/commands/several_files.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <map>
#include <mutex>
#include <new>
#include <optional>
#include <set>
#include <system_error>
#include <thread>
#include <utility>

#include "tools/io/interrupt.h"
#include "tools/io/messages.h"
#include "tools/io/output_file.h"

namespace vlvk::tool {
namespace {

namespace fs = std::filesystem;

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPause{200};

std::string timeLeft(double seconds) {
  char text[40];
  const auto whole = static_cast<long long>(seconds) + 1;
  if (whole < 100) {
    std::snprintf(text, sizeof text, ", %lld s left", whole);
  } else {
    std::snprintf(text, sizeof text, ", %lld:%02lld min left", whole / 60, whole % 60);
  }
  return text;
}

// What is done of several files, for the terminal, and a line for each failure.
class Report {
 public:
  Report(std::size_t count, FileProgress progress) : count_(count), progress_(progress) {}

  void begun(const std::string& name) {
    const std::lock_guard lock(mutex_);
    ++begun_;
    if (progress_ != FileProgress::kNames) return;
    showStatus(std::to_string(begun_) + " of " + std::to_string(count_) + ": " + oneLine(name));
    endStatus();
  }

  void ended(const std::optional<std::string>& failure) {
    if (failure) printError(*failure);
    const std::lock_guard lock(mutex_);
    ++ended_;
    hasFailed_ = hasFailed_ || failure;
    if (progress_ != FileProgress::kCount || (ended_ < count_ && Clock::now() - shown_ < kPause)) return;
    shown_ = Clock::now();
    showStatus(text());
  }

  bool hasFailed() const { return hasFailed_; }

 private:
  std::string text() const {
    const double seconds = std::chrono::duration<double>(Clock::now() - begin_).count();
    const double rate = static_cast<double>(ended_) / seconds;
    char speed[40];
    std::snprintf(speed, sizeof speed, ", %.1f/s", rate);
    return std::to_string(ended_) + " of " + std::to_string(count_) + speed +
           (ended_ < count_ ? timeLeft(static_cast<double>(count_ - ended_) / rate) : "");
  }

  std::mutex mutex_;
  std::size_t count_;
  FileProgress progress_;
  std::size_t begun_ = 0;
  std::size_t ended_ = 0;
  bool hasFailed_ = false;
  Clock::time_point begin_ = Clock::now();
  Clock::time_point shown_ = begin_;
};

// Why the work on a file failed; nothing: it did not.
std::optional<std::string> failureOf(const FilePair& file, const std::function<void(const FilePair& file)>& work) {
  try {
    work(file);
    return std::nullopt;
  } catch (const Error& error) {
    return error.what();
  } catch (const std::bad_alloc&) {
    return file.in + ": not enough memory";
  } catch (const std::exception& error) {
    return file.in + ": " + error.what();
  }
}

}  // namespace

std::vector<FilePair> resultsIn(const std::string& directory, const std::vector<std::string>& ins,
                                const std::function<std::string(const std::string& in)>& nameOf) {
  std::set<std::string> places;
  for (const std::string& in : ins)
    places.insert(placeOf(in));
  const auto refuse = [](std::string reason) { throw UsageError("--out-dir: " + std::move(reason)); };
  std::map<std::string, std::string> sources;
  std::vector<FilePair> files;
  for (const std::string& in : ins) {
    const std::string out = (fs::path(directory) / nameOf(in)).string();
    const auto [first, isNew] = sources.emplace(out, in);
    if (!isNew) refuse(std::string(first->second).append(" and ").append(in).append(" would both become ").append(out));
    if (places.contains(placeOf(out))) refuse(out + " is to be read and would be replaced; give another folder");
    files.push_back({in, out});
  }
  return files;
}

void makeDirectory(const std::string& path) {
  std::error_code error;
  fs::create_directories(path, error);
  if (!error && !fs::is_directory(path, error)) error = std::make_error_code(std::errc::not_a_directory);
  if (error) throw Error(path + ": cannot be made: " + systemReason(error.value()));
}

void forEachFile(const std::vector<FilePair>& files, int atOnce, FileProgress progress,
                 const std::function<void(const FilePair& file)>& work) {
  Report report(files.size(), progress);
  std::mutex mutex;
  std::size_t next = 0;
  const auto takeNext = [&]() -> const FilePair* {
    const std::lock_guard lock(mutex);
    return next < files.size() && !InterruptPause::isDue() ? &files[next++] : nullptr;
  };
  const auto workOnFiles = [&] {
    while (const FilePair* file = takeNext()) {
      report.begun(file->in);
      const std::optional<std::string> failure = failureOf(*file, work);
      if (InterruptPause::isDue()) return;  // which is the reason of all that fails now
      report.ended(failure);
    }
  };
  {
    std::optional<InterruptPause> pause;
    std::vector<std::jthread> threads;
    if (atOnce > 1) pause.emplace();  // before the threads, which get it from this one
    try {
      while (threads.size() + 1 < static_cast<std::size_t>(atOnce))
        threads.emplace_back(workOnFiles);
    } catch (const std::system_error&) {  // fewer will do
    }
    workOnFiles();
    threads.clear();  // waits for them
    endStatus();
  }
  if (report.hasFailed()) throw ReportedFailure();
}

}  // namespace vlvk::tool
