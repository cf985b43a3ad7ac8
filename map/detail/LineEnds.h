// The ends of a drawn line, by which its record is found: the texts of a feature have no place for them.
#pragma once

#include <optional>
#include <osg/ValueObject>
#include <string>

namespace kvn::detail {

struct LineEnds {
  std::string start;
  std::string end;
};

constexpr char const* kStartName = "kvn.start_name";
constexpr char const* kEndName = "kvn.end_name";

inline void storeLineEnds(osg::Object& feature, LineEnds const& ends) {
  feature.setUserValue(kStartName, ends.start);
  feature.setUserValue(kEndName, ends.end);
}

/// Nothing for a feature that is no line, or whose ends have no names.
inline std::optional<LineEnds> lineEndsOf(osg::Object const& feature) {
  LineEnds ends;
  if (!feature.getUserValue(kStartName, ends.start) || !feature.getUserValue(kEndName, ends.end)) return std::nullopt;
  return ends;
}

}  // namespace kvn::detail
