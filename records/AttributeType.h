// Geometry class of a legend code.
#pragma once

namespace kvn {

enum AttributeType { Point, Line, Polygon };

}  // namespace kvn
