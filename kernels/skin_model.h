/// The live skin model: centre, curve and table layout.
///
/// Interleaved tables suit de-interleaving vector loads: by four, bytes 0 .. 31 give registers with entries 0-7, 8-15,
/// 16-23 and 24-31; by two, the 16 bytes after them give 32-39 and 40-47.
#ifndef VLVK_KERNELS_SKIN_MODEL_H
#define VLVK_KERNELS_SKIN_MODEL_H

namespace vlvk {

/// Mean chroma of skin.
inline constexpr int kSkinU = 110;
inline constexpr int kSkinV = 155;

/// The curve around it: a spread of 8 chroma units (64 is its square), a plateau of 1.5 times that.
inline constexpr float kLivePlateauFactor = 1.5F;
inline constexpr float kLiveSpread = 64.0F;

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
