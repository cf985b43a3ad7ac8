#include "core/Configure.h"

#include <utils/Number.h>

#include <tinyxml2.h>
#include <QByteArray>
#include <stdexcept>

namespace kvn {
namespace {

// The eight digits that tinyxml2 gives a float, but with a point whatever the process's locale is: its own conversions
// follow the locale, and a decimal comma would not read back.
void writeFloat(tinyxml2::XMLElement& element, char const* name, float value) {
  element.SetAttribute(name, QByteArray::number(double(value), 'g', 8).constData());
}

void readFloat(tinyxml2::XMLElement const& element, char const* name, float& value) {
  char const* const text = element.Attribute(name);
  if (text == nullptr) return;
  try {
    value = static_cast<float>(utils::leadingNumber(text));
  } catch (std::logic_error const&) {  // no number: the field stays
  } catch (std::runtime_error const&) {
  }
}

void readFloat(Json::Value const& member, float& value) {
  if (member.isNumeric()) value = member.asFloat();
}

void readInt(Json::Value const& member, int& value) {
  if (member.isNumeric() && member.isConvertibleTo(Json::intValue)) value = member.asInt();
}

}  // namespace

Configure::Configure() = default;
Configure::Configure(tinyxml2::XMLElement const* element) { read(element); }
Configure::Configure(Json::Value const& value) { read(value); }

void Configure::write(tinyxml2::XMLElement* element) const {
  if (element == nullptr) return;
  writeFloat(*element, "AngleError", AngleError);
  writeFloat(*element, "LineFixedError", LineFixedError);
  writeFloat(*element, "LineProportionError", LineProportionError);
  element->SetAttribute("LineCalculateExpression", LineCalculateExpression);
  element->SetAttribute("AdjustMethod", AdjustMethod);
  element->SetAttribute("TraversePointAdjust", TraversePointAdjust);
  writeFloat(*element, "AtmosphericIndex", AtmosphericIndex);
}

void Configure::read(tinyxml2::XMLElement const* element) {
  if (element == nullptr) return;
  readFloat(*element, "AngleError", AngleError);
  readFloat(*element, "LineFixedError", LineFixedError);
  readFloat(*element, "LineProportionError", LineProportionError);
  LineCalculateExpression = element->BoolAttribute("LineCalculateExpression", LineCalculateExpression);
  AdjustMethod = element->IntAttribute("AdjustMethod", AdjustMethod);
  TraversePointAdjust = element->IntAttribute("TraversePointAdjust", TraversePointAdjust);
  readFloat(*element, "AtmosphericIndex", AtmosphericIndex);
}

void Configure::write(Json::Value& value) const {
  value["AngleError"] = double(AngleError);
  value["LineFixedError"] = double(LineFixedError);
  value["LineProportionError"] = double(LineProportionError);
  value["LineCalculateExpression"] = LineCalculateExpression;
  value["AdjustMethod"] = AdjustMethod;
  value["TraversePointAdjust"] = TraversePointAdjust;
  value["AtmosphericIndex"] = double(AtmosphericIndex);
}

void Configure::read(Json::Value const& value) {
  if (!value.isObject()) return;
  readFloat(value["AngleError"], AngleError);
  readFloat(value["LineFixedError"], LineFixedError);
  readFloat(value["LineProportionError"], LineProportionError);
  Json::Value const& expression = value["LineCalculateExpression"];
  if (!expression.isNull() && expression.isConvertibleTo(Json::booleanValue)) {
    LineCalculateExpression = expression.asBool();
  }
  readInt(value["AdjustMethod"], AdjustMethod);
  readInt(value["TraversePointAdjust"], TraversePointAdjust);
  readFloat(value["AtmosphericIndex"], AtmosphericIndex);
}

}  // namespace kvn
