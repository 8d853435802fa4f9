/// EXIF, XMP and IPTC through Exiv2, and one field of an ICC header.
#include "tools/picture/metadata.h"

#include <exiv2/convert.hpp>
#include <exiv2/error.hpp>
#include <exiv2/exif.hpp>
#include <exiv2/iptc.hpp>
#include <exiv2/jpgimage.hpp>
#include <exiv2/xmp_exiv2.hpp>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iterator>
#include <mutex>
#include <string>
#include <string_view>

namespace vlvk::tool {
namespace {

constexpr double kCentimeter = 0.01;
constexpr long kUnitInch = 2;        // NOLINT(google-runtime-int): the library's type
constexpr long kUnitCentimeter = 3;  // NOLINT(google-runtime-int)

constexpr std::string_view kExtendedXmp = "Xmp.xmpNote.HasExtendedXMP";
constexpr char kOrientation[] = "Exif.Image.Orientation";
constexpr char kXmpOrientation[] = "Xmp.tiff.Orientation";
constexpr char kResolutionX[] = "Exif.Image.XResolution";
constexpr char kResolutionY[] = "Exif.Image.YResolution";
constexpr char kResolutionUnit[] = "Exif.Image.ResolutionUnit";

/// False where the library throws or `work` returns false. The library keeps namespaces of XMP for the whole process,
/// so that one thread at a time is in it, and prints what it finds odd unless it is muted.
template <typename Work>
bool succeeds(const Work& work) {
  static std::mutex library;
  const std::lock_guard lock(library);
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
  try {
    return work();
  } catch (const std::exception&) {
    return false;
  }
}

Exiv2::ByteOrder decode(const std::vector<std::uint8_t>& block, Exiv2::ExifData* exif) {
  if (block.empty()) return Exiv2::littleEndian;
  const Exiv2::ByteOrder order =
      Exiv2::ExifParser::decode(*exif, block.data(), static_cast<std::uint32_t>(block.size()));
  return order == Exiv2::invalidByteOrder ? Exiv2::littleEndian : order;
}

bool decode(const std::vector<std::uint8_t>& block, Exiv2::IptcData* iptc) {
  return block.empty() || Exiv2::IptcParser::decode(*iptc, block.data(), static_cast<std::uint32_t>(block.size())) == 0;
}

bool decode(const std::string& packet, Exiv2::XmpData* xmp) {
  return packet.empty() || Exiv2::XmpParser::decode(*xmp, packet) == 0;
}

/// The value of an entry; null: it has none.
const Exiv2::Exifdatum* find(const Exiv2::ExifData& exif, const char* key) {
  const auto entry = exif.findKey(Exiv2::ExifKey(key));
  return entry != exif.end() && entry->count() > 0 ? &*entry : nullptr;
}

long number(const Exiv2::ExifData& exif, const char* key, long otherwise) {  // NOLINT(google-runtime-int)
  const Exiv2::Exifdatum* entry = find(exif, key);
  return entry != nullptr ? entry->toLong() : otherwise;
}

std::optional<Density> densityOf(const Exiv2::ExifData& exif) {
  const Exiv2::Exifdatum* x = find(exif, kResolutionX);
  const Exiv2::Exifdatum* y = find(exif, kResolutionY);
  const auto unit = number(exif, kResolutionUnit, kUnitInch);
  if (x == nullptr || y == nullptr || (unit != kUnitInch && unit != kUnitCentimeter)) return std::nullopt;
  const double length = unit == kUnitInch ? kInch : kCentimeter;
  const Density density{double{x->toFloat()} / length, double{y->toFloat()} / length};
  const auto isSane = [](double value) { return value > 0 && value < 1e9; };
  return isSane(density.x) && isSane(density.y) ? std::optional(density) : std::nullopt;
}

Exiv2::Rational perInch(double perMetre) {
  const double hundredths = std::round(perMetre * kInch * 100);
  const auto whole = static_cast<std::int32_t>(std::min(hundredths, 2e9));
  // A file that counts in metres cannot say 72 or 300 per inch exactly.
  if (std::abs(hundredths - std::round(hundredths / 100) * 100) <= 1) return {(whole + 50) / 100, 1};
  return {whole, 100};
}

void setIfPresent(Exiv2::ExifData* exif, const char* key, int value) {
  const auto entry = exif->findKey(Exiv2::ExifKey(key));
  if (entry == exif->end()) return;
  if (value > 0xFFFF) {
    *entry = static_cast<std::uint32_t>(value);
  } else {
    entry->setValue(std::to_string(value));  // of the same type
  }
}

void exchangeResolutions(Exiv2::ExifData* exif) {
  const auto x = exif->findKey(Exiv2::ExifKey(kResolutionX));
  const auto y = exif->findKey(Exiv2::ExifKey(kResolutionY));
  if (x == exif->end() || y == exif->end()) return;
  const std::string old = x->toString();
  x->setValue(y->toString());
  y->setValue(old);
}

void addDensity(const Density& density, Exiv2::ExifData* exif) {
  if (!density.absolute || find(*exif, kResolutionX) != nullptr) return;
  (*exif)[kResolutionX] = perInch(density.x);
  (*exif)[kResolutionY] = perInch(density.y);
  (*exif)[kResolutionUnit] = static_cast<std::uint16_t>(kUnitInch);
}

/// @param old  the block that `exif` was read from; empty: everything is laid out anew
std::vector<std::uint8_t> encode(const Exiv2::ExifData& exif, Exiv2::ByteOrder order, std::vector<std::uint8_t> old) {
  Exiv2::Blob written;
  const Exiv2::WriteMethod method = Exiv2::ExifParser::encode(written, old.empty() ? nullptr : old.data(),
                                                              static_cast<std::uint32_t>(old.size()), order, exif);
  return method == Exiv2::wmNonIntrusive ? old : std::vector<std::uint8_t>(written);
}

/// Whether it shows nothing of the old file and no other way up.
bool fits(const std::vector<std::uint8_t>& block) {
  Exiv2::ExifData exif;
  decode(block, &exif);
  return number(exif, kOrientation, 1) == 1 && Exiv2::ExifThumb(exif).copy().size_ == 0;
}

std::vector<std::uint8_t> exifFor(const PictureOrigin& origin, FrameSize size, const MetadataRoom& room) {
  const std::vector<std::uint8_t>& block = origin.metadata.exif;
  Exiv2::ExifData exif;
  const Exiv2::ByteOrder order = decode(block, &exif);
  setIfPresent(&exif, kOrientation, 1);
  setIfPresent(&exif, "Exif.Photo.PixelXDimension", size.width);
  setIfPresent(&exif, "Exif.Photo.PixelYDimension", size.height);
  if (origin.turned) exchangeResolutions(&exif);
  if (!room.density && origin.density) addDensity(*origin.density, &exif);
  Exiv2::ExifThumb(exif).erase();
  if (exif.empty()) return {};
  // With the old block the library changes what it can in place, so that nothing that it does not understand, such as
  // the notes of an unknown camera, is moved. In a damaged block that may miss.
  std::vector<std::uint8_t> written = encode(exif, order, block);
  if (!fits(written)) written = encode(exif, order, {});
  if (!fits(written)) throw Exiv2::Error(Exiv2::kerErrorMessage);
  return written;
}

/// Thumbnails, and what refers to bytes of the old file outside of its packet: further XMP, motion and gain maps.
bool concernsOldFile(std::string_view key) {
  static constexpr std::string_view kStarts[] = {"Xmp.xmp.Thumbnails",      kExtendedXmp,     "Xmp.GCamera.MicroVideo",
                                                 "Xmp.GCamera.MotionPhoto", "Xmp.Container.", "Xmp.hdrgm.",
                                                 "Xmp.HDRGainMap."};
  return std::any_of(std::begin(kStarts), std::end(kStarts),
                     [key](std::string_view start) { return key.substr(0, start.size()) == start; });
}

long orientationOf(const Exiv2::XmpData& xmp) {  // NOLINT(google-runtime-int): the library's type
  const auto entry = xmp.findKey(Exiv2::XmpKey(kXmpOrientation));
  return entry != xmp.end() && entry->count() > 0 ? entry->toLong() : 0;
}

/// Returns whether something has changed.
bool describe(FrameSize size, Exiv2::XmpData* xmp) {
  bool changed = false;
  const auto set = [&](const char* key, int value) {
    const auto entry = xmp->findKey(Exiv2::XmpKey(key));
    if (entry == xmp->end() || entry->toString() == std::to_string(value)) return;
    entry->setValue(std::to_string(value));
    changed = true;
  };
  set(kXmpOrientation, 1);
  set("Xmp.tiff.ImageWidth", size.width);
  set("Xmp.tiff.ImageLength", size.height);
  set("Xmp.exif.PixelXDimension", size.width);
  set("Xmp.exif.PixelYDimension", size.height);
  for (auto entry = xmp->begin(); entry != xmp->end();) {
    const bool goes = concernsOldFile(entry->key());
    entry = goes ? xmp->erase(entry) : entry + 1;
    changed = changed || goes;
  }
  return changed;
}

/// What XMP already says stays. Returns whether something has changed.
bool addIptc(const std::vector<std::uint8_t>& block, Exiv2::XmpData* xmp) {
  Exiv2::IptcData iptc;
  decode(block, &iptc);
  Exiv2::XmpData converted;
  Exiv2::copyIptcToXmp(iptc, converted);
  bool changed = false;
  for (const Exiv2::Xmpdatum& entry : converted) {
    if (xmp->findKey(Exiv2::XmpKey(entry.key())) != xmp->end()) continue;
    xmp->add(entry);
    changed = true;
  }
  return changed;
}

std::string xmpFor(const Metadata& metadata, FrameSize size, const MetadataRoom& room) {
  Exiv2::XmpData xmp;
  decode(metadata.xmp, &xmp);
  bool changed = describe(size, &xmp);
  if (!room.iptc && !metadata.iptc.empty()) changed = addIptc(metadata.iptc, &xmp) || changed;
  if (!changed) return metadata.xmp;
  std::string packet;
  if (!xmp.empty() && Exiv2::XmpParser::encode(packet, xmp) != 0) throw Exiv2::Error(Exiv2::kerErrorMessage);
  return packet;
}

void dropped(const std::string& what, Notes* notes) {
  addNote(notes, "its " + what + " left out");
}

bool hasRoom(const MetadataRoom& room, const Text& text) {
  constexpr std::size_t kMaxName = 79;  // of PNG, whose library fails at empty names
  const std::string& name = text.name;
  if (room.texts == TextRoom::kNone || text.text.size() > room.maxText) return false;
  if (room.texts == TextRoom::kComments) return name == kCommentName;
  return !name.empty() && name.size() <= kMaxName && std::isgraph(static_cast<unsigned char>(name[0])) != 0;
}

std::vector<Text> textsFor(const std::vector<Text>& texts, const MetadataRoom& room, Notes* notes) {
  std::vector<Text> kept;
  std::copy_if(texts.begin(), texts.end(), std::back_inserter(kept),
               [&](const Text& text) { return hasRoom(room, text); });
  if (kept.size() < texts.size()) dropped("texts do not fit and are", notes);
  return kept;
}

/// Many programs state sRGB in this way, which all kinds of files mean without.
bool isSrgb(const StatedColors& colors) {
  static constexpr StatedColors kSrgb{45455, {31270, 32900, 64000, 33000, 30000, 60000, 15000, 6000}};
  const auto isNear = [](std::int32_t value, std::int32_t other) {
    return value == 0 || std::abs(value - other) <= 500;
  };
  return isNear(colors.gamma, kSrgb.gamma) &&
         std::equal(colors.chromaticities.begin(), colors.chromaticities.end(), kSrgb.chromaticities.begin(), isNear);
}

}  // namespace

int readMetadata(PictureOrigin* origin, Notes* notes) {
  Metadata& metadata = origin->metadata;
  long orientation = 0;  // none; NOLINT(google-runtime-int): the library's type
  const auto readExif = [&] {
    Exiv2::ExifData exif;
    decode(metadata.exif, &exif);
    orientation = number(exif, kOrientation, 0);
    if (!origin->density) origin->density = densityOf(exif);
    return !exif.empty();
  };
  const auto readXmp = [&] {
    Exiv2::XmpData xmp;
    if (!decode(metadata.xmp, &xmp)) return false;
    if (orientation == 0) orientation = orientationOf(xmp);
    const bool extended =
        std::any_of(xmp.begin(), xmp.end(), [](const Exiv2::Xmpdatum& entry) { return entry.key() == kExtendedXmp; });
    if (extended) dropped("extended XMP is", notes);
    return true;
  };
  const auto readIptc = [&] {
    Exiv2::IptcData iptc;
    return decode(metadata.iptc, &iptc);
  };
  if (!metadata.exif.empty() && !succeeds(readExif)) {
    metadata.exif.clear();
    dropped("EXIF data cannot be read and is", notes);
  }
  if (!metadata.xmp.empty() && !succeeds(readXmp)) {
    metadata.xmp.clear();
    dropped("XMP data cannot be read and is", notes);
  }
  if (!metadata.iptc.empty() && !succeeds(readIptc)) {
    metadata.iptc.clear();
    dropped("IPTC data cannot be read and is", notes);
  }
  return orientation >= 1 && orientation <= 8 ? static_cast<int>(orientation) : 1;
}

Metadata metadataFor(const PictureOrigin& origin, FrameSize size, const MetadataRoom& room, Notes* notes) {
  Metadata result;
  const auto writeExif = [&] {
    result.exif = exifFor(origin, size, room);
    return result.exif.size() <= room.maxExif;
  };
  const auto writeXmp = [&] {
    result.xmp = xmpFor(origin.metadata, size, room);
    return result.xmp.size() <= room.maxXmp;
  };
  if (!succeeds(writeExif)) {
    result.exif.clear();
    dropped("EXIF data does not fit and is", notes);
  }
  if (!succeeds(writeXmp)) {
    result.xmp.clear();
    dropped("XMP data does not fit and is", notes);
  }
  if (room.iptc) result.iptc = origin.metadata.iptc;
  result.texts = textsFor(origin.metadata.texts, room, notes);
  if (!room.colors && origin.colors && !isSrgb(*origin.colors))
    dropped("gamma and primaries do not fit and are", notes);
  return result;
}

std::vector<std::uint8_t> withoutExifSignature(std::span<const std::uint8_t> block) {
  static constexpr std::uint8_t kSignature[] = {'E', 'x', 'i', 'f', 0, 0};
  const bool signedBlock =
      block.size() > sizeof kSignature && std::equal(std::begin(kSignature), std::end(kSignature), block.begin());
  if (signedBlock) block = block.subspan(sizeof kSignature);
  return {block.begin(), block.end()};
}

std::vector<std::uint8_t> iptcOfPhotoshopBlock(std::span<const std::uint8_t> block) {
  const Exiv2::byte* record = nullptr;
  std::uint32_t header = 0;
  std::uint32_t size = 0;
  const bool found = succeeds([&] {
    return Exiv2::Photoshop::locateIptcIrb(block.data(), static_cast<long>(block.size()),  // NOLINT
                                           &record, &header, &size) == 0;
  });
  if (!found) return {};
  return {record + header, record + header + size};
}

std::vector<std::uint8_t> photoshopBlockOf(const std::vector<std::uint8_t>& iptc) {
  std::vector<std::uint8_t> block;
  succeeds([&] {
    Exiv2::IptcData data;
    decode(iptc, &data);
    const Exiv2::DataBuf buffer = Exiv2::Photoshop::setIptcIrb(nullptr, 0, data);
    block.assign(buffer.pData_, buffer.pData_ + buffer.size_);
    return true;
  });
  return block;
}

bool isRgbProfile(std::span<const std::uint8_t> profile) {
  // The header of a profile has 128 bytes, the colour space stands at byte 16.
  return profile.size() >= 128 && std::memcmp(profile.data() + 16, "RGB ", 4) == 0;
}

std::vector<std::uint8_t> rgbProfile(std::span<const std::uint8_t> profile, Notes* notes) {
  if (isRgbProfile(profile)) return {profile.begin(), profile.end()};
  if (!profile.empty()) dropped("ICC profile is not one of RGB and is", notes);
  return {};
}

}  // namespace vlvk::tool
