#include <mvz/detail/MapFont.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace mvz::detail {
namespace {

constexpr char const* kChineseFonts[] = {
    "/usr/share/fonts/truetype/wqy/wqy-microhei.ttc",
    "/usr/share/fonts/wqy-microhei/wqy-microhei.ttc",
    "/usr/share/fonts/wenquanyi/wqy-microhei/wqy-microhei.ttc",
    "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc",
    "/usr/share/fonts/wqy-zenhei/wqy-zenhei.ttc",
    "/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc",
    "/usr/share/fonts/noto-cjk/NotoSansCJK-Regular.ttc",
    "/usr/share/fonts/google-noto-cjk/NotoSansCJK-Regular.ttc",
    "/usr/share/fonts/opentype/noto/NotoSansCJKsc-Regular.otf",
    "/usr/share/fonts/truetype/droid/DroidSansFallbackFull.ttf",
    "C:/Windows/Fonts/msyh.ttc",
    "C:/Windows/Fonts/msyh.ttf",
    "C:/Windows/Fonts/simsun.ttc",
    "C:/Windows/Fonts/simhei.ttf",
    "/System/Library/Fonts/PingFang.ttc",
    "/System/Library/Fonts/STHeiti Light.ttc",
};
constexpr char const* kLatinFonts[] = {
    "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
    "/usr/share/fonts/dejavu/DejaVuSans.ttf",
    "/usr/share/fonts/TTF/DejaVuSans.ttf",
    "C:/Windows/Fonts/arial.ttf",
};

struct Font {
  std::string file;
  bool hasChinese = false;
};

Font findFont() {
  char const* const wanted = std::getenv("KELVANE_FONT");
  if (wanted != nullptr && *wanted != '\0') return {wanted, true};
  std::error_code none;
  for (char const* const font : kChineseFonts) {
    if (std::filesystem::is_regular_file(font, none)) return {font, true};
  }
  for (char const* const font : kLatinFonts) {
    if (std::filesystem::is_regular_file(font, none)) return {font, false};
  }
  return {};
}

Font const& font() {
  static Font const found = findFont();
  return found;
}

}  // namespace

std::string const& mapFontFile() { return font().file; }

bool mapFontHasChinese() { return font().hasChinese; }

}  // namespace mvz::detail
