// The ends of a drawn line, by which its record is found: the texts of a feature have no place for them.
#pragma once

#include "mvz/detail/Attached.h"

#include <osg/Referenced>
#include <osgEarth/AnnotationNode>
#include <string>
#include <utility>

namespace kvn::detail {

struct LineEnds : osg::Referenced {
  LineEnds(std::string startName, std::string endName) : start(std::move(startName)), end(std::move(endName)) {}

  std::string const start;
  std::string const end;

 protected:
  ~LineEnds() override = default;
};

/// Nothing happens to a feature that cannot be selected: the lines of the drawing tools can.
inline void storeLineEnds(osgEarth::AnnotationNode& line, std::string const& start, std::string const& end) {
  auto* const feature = dynamic_cast<mvz::ISelectable*>(&line);
  if (feature != nullptr) mvz::detail::Attached::endsOf(*feature) = new LineEnds(start, end);
}

/// Null for a feature that is no line, or whose ends have no names.
inline LineEnds const* lineEndsOf(osgEarth::AnnotationNode const& feature) {
  auto const* const line = dynamic_cast<mvz::ISelectable const*>(&feature);
  return line == nullptr ? nullptr : dynamic_cast<LineEnds const*>(mvz::detail::Attached::endsOf(*line));
}

}  // namespace kvn::detail
