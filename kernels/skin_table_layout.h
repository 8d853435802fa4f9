/// Where the entries of an interleaved skin table stand.
///
/// The orders suit de-interleaving vector loads: by four, bytes 0 .. 31 give registers with entries 0-7, 8-15, 16-23
/// and 24-31; by two, the 16 bytes behind them give 32-39 and 40-47.
#ifndef VLVK_KERNELS_SKIN_TABLE_LAYOUT_H
#define VLVK_KERNELS_SKIN_TABLE_LAYOUT_H

namespace vlvk {

/// Entries of the table that the blend reads.
inline constexpr int kLiveSkinEntries = 48;

/// Byte of entry i (0 .. 31) of a 32-entry table interleaved by four.
constexpr int fourWayPosition(int i) {
  return 4 * (i % 8) + i / 8;
}

/// Byte of entry i (0 .. 47) of the 48-entry table: 32 entries by four, then 16 by two.
constexpr int liveSkinTablePosition(int i) {
  return i < 32 ? fourWayPosition(i) : 32 + 2 * (i % 8) + (i / 8) % 2;
}

}  // namespace vlvk

#endif
