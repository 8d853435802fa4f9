/// The command `sheet`: layout and drawing.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "tools/commands/canvas.h"
#include "tools/commands/commands.h"
#include "tools/commands/files.h"
#include "tools/engine/beautify.h"
#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

constexpr int kGap = 6;
constexpr std::int64_t kMaxSheetPixels = 100'000'000;

int textLength(const std::string& text) {
  return SheetCanvas::letterWidth() * static_cast<int>(text.size());
}

// Sizes and places in pixels. A title and labels stand above the cells and to their left, the left title upright.
struct Layout {
  int scale;  // of text
  int line;   // height of text
  int cellWidth;
  std::int64_t cellHeight;
  int left;  // of the first cell
  int top;
  std::int64_t width;
  std::int64_t height;

  Layout(const SheetOptions& options, const Region& shown)
      : scale(options.cell >= 2 * kLeastCell ? 2 : 1),
        line(SheetCanvas::letterHeight() * scale),
        cellWidth(options.cell),
        cellHeight(std::max(std::int64_t{1}, (std::int64_t{cellWidth} * shown.height + shown.width / 2) / shown.width)),
        left(2 * kGap + line + scale * labelLength(options.rows) + kGap),
        top(kGap + line + kGap + line + kGap) {
    const auto columns = static_cast<std::int64_t>(options.columns.values.size()) + (options.original ? 1 : 0);
    const auto rows = static_cast<std::int64_t>(options.rows.values.size());
    width = left + std::max(columns * (cellWidth + kGap), extent(options.columns));
    height = top + std::max(rows * (cellHeight + kGap), extent(options.rows));
  }

  Region cell(std::size_t column, std::size_t row) const {
    return {left + static_cast<int>(column) * (cellWidth + kGap),
            top + static_cast<int>(row) * (static_cast<int>(cellHeight) + kGap), cellWidth,
            static_cast<int>(cellHeight)};
  }

 private:
  static int labelLength(const SheetAxis& axis) {
    int length = 0;
    for (const int value : axis.values)
      length = std::max(length, textLength(spelled(*axis.setting, value)));
    return length;
  }

  // Of the title of an axis, which may be longer than its cells.
  std::int64_t extent(const SheetAxis& axis) const { return scale * textLength(axis.setting->title) + kGap; }
};

Region shownPart(const SheetOptions& options, const Picture& picture) {
  if (!options.crop) return {0, 0, picture.width, picture.height};
  const Region& part = *options.crop;
  if (part.width > picture.width || part.x > picture.width - part.width || part.height > picture.height ||
      part.y > picture.height - part.height) {
    throw Error("the part of --crop reaches beyond the picture of " + std::to_string(picture.width) + " x " +
                std::to_string(picture.height) + " pixels");
  }
  return part;
}

void checkSheetSize(const Layout& layout) {
  constexpr auto kMaxSheetSide = static_cast<std::int64_t>(kMaxSide);
  if (layout.width <= kMaxSheetSide && layout.height <= kMaxSheetSide &&
      layout.width * layout.height <= kMaxSheetPixels) {
    return;
  }
  throw Error("the sheet would have " + std::to_string(layout.width) + " x " + std::to_string(layout.height) +
              " pixels, at most " + std::to_string(kMaxSheetSide) + " on a side and " +
              std::to_string(kMaxSheetPixels / 1000000) + " megapixels are written; make --cell smaller");
}

void writeLabels(const SheetOptions& options, const Layout& layout, SheetCanvas* canvas) {
  const std::size_t first = options.original ? 1 : 0;
  const auto middle = [](int begin, std::int64_t end) { return static_cast<int>((begin + end - kGap) / 2); };
  const auto write = [&](const std::string& text, int x, int y) { canvas->writeText(text, x, y, layout.scale); };
  write(options.columns.setting->title, middle(layout.left, layout.width), kGap + layout.line / 2);
  canvas->writeText(options.rows.setting->title, kGap + layout.line / 2, middle(layout.top, layout.height),
                    layout.scale, true);
  const auto labelColumn = [&](const std::string& text, std::size_t column) {
    write(text, layout.cell(column, 0).x + layout.cellWidth / 2, layout.top - kGap - layout.line / 2);
  };
  if (options.original) labelColumn("original", 0);
  for (std::size_t c = 0; c < options.columns.values.size(); ++c)
    labelColumn(spelled(*options.columns.setting, options.columns.values[c]), first + c);
  for (std::size_t r = 0; r < options.rows.values.size(); ++r) {
    const std::string text = spelled(*options.rows.setting, options.rows.values[r]);
    const Region cell = layout.cell(0, r);
    write(text, cell.x - kGap - layout.scale * textLength(text) / 2, cell.y + cell.height / 2);
  }
}

// One result is in memory at a time. Pictures are filtered as they are and scaled afterwards: the radius is in their
// pixels.
void drawCells(const SheetOptions& options, const Layout& layout, const Picture& original, const Region& shown,
               const Look& others, SheetCanvas* canvas) {
  Look look = others;
  for (std::size_t r = 0; r < options.rows.values.size(); ++r) {
    look.settings.*options.rows.setting->value = options.rows.values[r];
    std::size_t column = 0;
    if (options.original) canvas->drawPicture(original, shown, layout.cell(column++, r));
    for (const int value : options.columns.values) {
      look.settings.*options.columns.setting->value = value;
      canvas->drawPicture(beautify(original, look), shown, layout.cell(column++, r));
    }
  }
}

Picture draw(const SheetOptions& options, const Layout& layout, const Picture& original, const Region& shown,
             const Look& look) {
  SheetCanvas canvas(static_cast<int>(layout.width), static_cast<int>(layout.height));
  writeLabels(options, layout, &canvas);
  drawCells(options, layout, original, shown, look, &canvas);
  Picture sheet = canvas.picture();
  sheet.colorProfile = original.colorProfile;
  return sheet;
}

}  // namespace

void run(const SheetOptions& options) {
  requirePictureName(options.out);  // before the work is done
  const Picture original = readPicture(options.in);
  const Look look = readLook(options.look);
  const Region shown = named(options.in, [&] { return shownPart(options, original); });
  const Layout layout(options, shown);
  named(options.out, [&] { checkSheetSize(layout); });
  writePicture(options.out, named(options.in, [&] { return draw(options, layout, original, shown, look); }));
}

}  // namespace vlvk::tool
