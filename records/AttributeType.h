// Geometry class of a legend code.
#pragma once

#include <QMetaType>

namespace kvn {

enum AttributeType { Point, Line, Polygon };

}  // namespace kvn

Q_DECLARE_METATYPE(kvn::AttributeType)
