/// A colour table in memory, of a file that the user of a plugin has named.
#ifndef VLVK_PLUGINS_TABLE_FILE_H
#define VLVK_PLUGINS_TABLE_FILE_H

#include <cstddef>
#include <memory>

namespace vlvk::plugins {

struct TableBytes {
  std::unique_ptr<unsigned char[]> data;  ///< null: no table
  std::size_t size = 0;
};

/// Reads as much of a file as a colour table can have. Whether it is one is for vlvkMakeupSetTable to say.
///
/// @param path  "": no table
/// @return 0, or the errno of what failed; `table` is then not to be used
int readTable(const char* path, TableBytes& table);

}  // namespace vlvk::plugins

#endif
