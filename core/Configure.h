// Configure: the settings of one project.
#pragma once

#include <utils/Export.h>

#include <json/value.h>

namespace tinyxml2 {
class XMLElement;
}

namespace kvn {

/// The settings of a calculation. The field names are the attribute names in the project file and the JSON members.
class KELVANE_EXPORT Configure {
 public:
  Configure();
  Configure(tinyxml2::XMLElement const* element);
  Configure(Json::Value const& value);

  /// Standard error of one direction, seconds of arc, above 0. Twice the value weighs directions four times less
  /// against distances.
  float AngleError = 2.0F;
  /// Fixed part of the standard error of a distance, millimetres, 0 or more, but not 0 together with the next one.
  float LineFixedError = 3.0F;
  /// Part of it that grows with the distance, parts per million, 0 or more.
  float LineProportionError = 3.0F;
  /// How the two parts are joined where residuals are summed to the unit weight error: true a + b S, false the root of
  /// a² + (b S)². The weights of the adjustment itself always take the sum.
  bool LineCalculateExpression = false;
  /// 0 least squares, 1 open traverse, 2 connecting traverse, 3 closed traverse; any other value computes nothing.
  int AdjustMethod = 0;
  /// 0: the adjusted heights go into the coordinate list too; any other value: they do not.
  int TraversePointAdjust = 0;
  /// Refraction coefficient of the trigonometric heights.
  float AtmosphericIndex = 0.16F;

  /// Sets the seven attributes; a null element writes nothing.
  void write(tinyxml2::XMLElement* element) const;
  /// Takes the attributes that are there and can be read; the others keep their fields as they are.
  void read(tinyxml2::XMLElement const* element);
  void write(Json::Value& value) const;
  /// Takes the numeric members and, for the bool, what converts to one; the others keep their fields as they are.
  void read(Json::Value const& value);
};

}  // namespace kvn
