/// One use of the plugin in a host: a size of frames, the values of parameters, an engine.
#ifndef VLVK_PLUGINS_FREI0R_INSTANCE_H
#define VLVK_PLUGINS_FREI0R_INSTANCE_H

#include <cstdint>
#include <memory>

#include <vlvk/makeup.h>
#include "plugins/frei0r/parameters.h"

namespace vlvk::frei0r {

/// Hosts call an instance on one thread at a time, and several instances at once. What fails is said in one line on
/// standard error; nothing is thrown.
class Instance {
 public:
  /// @param width, height  of all frames; any that the engine takes, also where frei0r wants multiples of 8
  /// @return null if there is no memory, or no such frame; `delete` ends it
  static Instance* create(unsigned width, unsigned height);
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  /// Hosts set all values for each frame, so one that is there already costs a comparison. The engine gets changes with
  /// the next frame. A NaN changes nothing.
  void setNumber(Parameter parameter, double value);
  /// What was set, also out of range.
  double number(Parameter parameter) const { return numbers_[parameter]; }

  /// Reads the file, once: the same path again, also of a file that could not be read, does nothing.
  ///
  /// @param path  copied; "" or null: no table
  void setTablePath(const char* path);
  /// What was set. The instance owns it, until the next setTablePath().
  char* tablePath();

  /// Without success the result is the source.
  ///
  /// @param source  rows of R G B A without bytes between them; only read
  /// @param target  the same, may be `source`
  void process(const std::uint32_t* source, std::uint32_t* target);

 private:
  struct DestroyMakeup {
    void operator()(VlvkMakeup* makeup) const { vlvkMakeupDestroy(makeup); }
  };
  struct FreeText {
    void operator()(char* text) const;
  };

  explicit Instance(const VlvkFrame& frame) : frame_(frame) {}

  VlvkFrame frame_;  ///< its plane is that of whoever uses it
  std::unique_ptr<VlvkMakeup, DestroyMakeup> makeup_;
  Numbers numbers_ = kDefaultNumbers;
  bool hasNewNumbers_ = false;
  bool hasFailed_ = false;  ///< a frame, which has been said
  std::unique_ptr<char, FreeText> path_;
  char noPath_[1] = "";  ///< for hosts, which get no constant text
};

}  // namespace vlvk::frei0r

#endif
