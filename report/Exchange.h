// Exchange: points and lines of a job for other programs.
#pragma once

#include "report/SiteDrawing.h"
#include "report/SiteSvg.h"

#include <utils/Export.h>

#include <QString>
#include <QStringList>
#include <iosfwd>

namespace kvn {

/// Version of the columns of CSV, the members of GeoJSON and the layers of DXF. New ones may come at the end of a
/// version; none goes or changes its meaning.
constexpr int kExchangeVersion = 1;

struct ExchangeOptions {
  bool hasByteOrderMark = false;  ///< of CSV, for spreadsheets that take a text without one for the local encoding
  int epsg = 0;                   ///< number of the plane reference system, for GeoJSON; 0: none is told
  SvgOptions svg = {};            ///< of SVG; of DXF the kind and the scale of the ellipses, and the words
};

/// Suffixes, in small letters, of the files that can be written: csv, geojson, dxf, svg.
KELVANE_EXPORT QStringList exchangeKinds();

/// Writes what a job shows as a file of the kind that the suffix says. The folder is made where it is not there, and an
/// old file is replaced only when the new one is complete.
/// @throws JobException for an unknown suffix, a drawing without points, and with the reason where the file cannot be
///         written.
KELVANE_EXPORT void writeExchange(QString const& path, SiteDrawing const& drawing, ExchangeOptions const& options = {});

/// The points, a line each under one line of heads, as RFC 4180 has it: UTF-8, commas, CR LF, quotes where a text needs
/// them. Numbers have a point and all digits that tell the double; what does not exist is empty.
///
///     name, north_m, east_m, height_m          metres
///     kind                                     known, new or side (seen from one station alone)
///     coordinates                              held, adjusted, given or approximate
///     checked                                  no where nothing checks the point; else yes; empty without a run
///     sigma_north_mm, sigma_east_mm, sigma_position_mm, sigma_height_mm    standard errors
///     ellipse_major_mm, ellipse_minor_mm       semi-axes of the standard error ellipse
///     ellipse_bearing_deg                      azimuth of the major axis, degrees, 0 to 180
///     shift_north_mm, shift_east_mm            of a known point that is not held, from its given coordinates
KELVANE_EXPORT void writeCsv(std::ostream& stream, SiteDrawing const& drawing, ExchangeOptions const& options);

/// One FeatureCollection: points with the properties of the columns above, lines with what was observed along them.
/// Positions are east, north and, where there is one, height, in metres in the plane of the job, and not the degrees
/// that RFC 7946 wants: a note says so. A reference system stands in the member `crs` that readers took before it.
KELVANE_EXPORT void writeGeoJson(std::ostream& stream, SiteDrawing const& drawing, ExchangeOptions const& options);

/// DXF of release 12, ASCII. x is east, y north, in metres. Points have their heights, the rest lies at 0. Layers:
/// POINTS_KNOWN, POINTS_NEW, POINTS_SIDE, NAMES, HEIGHTS, LINES, LINES_SUSPECT, NOTES and ELLIPSES_X and their scale
/// (ELLIPSES_X2000), a polyline each. Other signs than those of ASCII are written as \U+XXXX.
KELVANE_EXPORT void writeDxf(std::ostream& stream, SiteDrawing const& drawing, ExchangeOptions const& options);

}  // namespace kvn
