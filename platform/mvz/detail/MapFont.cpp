#include <mvz/detail/MapFont.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace mvz::detail {
namespace {

/// Fonts with Chinese characters first; the last ones have Latin letters only.
constexpr char const* kFonts[] = {
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
    "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
    "/usr/share/fonts/dejavu/DejaVuSans.ttf",
    "/usr/share/fonts/TTF/DejaVuSans.ttf",
    "C:/Windows/Fonts/arial.ttf",
};

std::string findFont() {
  char const* const wanted = std::getenv("KELVANE_FONT");
  if (wanted != nullptr && *wanted != '\0') return wanted;
  std::error_code none;
  for (char const* const font : kFonts) {
    if (std::filesystem::is_regular_file(font, none)) return font;
  }
  return {};
}

}  // namespace

std::string const& mapFontFile() {
  static std::string const font = findFont();
  return font;
}

}  // namespace mvz::detail
