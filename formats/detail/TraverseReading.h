// Reading a traverse file, with a look at each line on the way.
#pragma once

#include "formats/FieldTextCheck.h"
#include "formats/VRDTraverseDataCollcetion.h"

#include <utils/Pieces.h>

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace kvn::detail {

/// Called with the number of a line, from 1, its text and its fields, once it has become a row.
using TraverseLook = std::function<void(int, std::string const&, utils::Pieces const&)>;

/// Makes room for the rows of a stream that can go back, so that they are not there twice while the list grows. The
/// stream stays where it is; one that cannot go back is left alone.
void reserveRows(std::istream& stream, std::vector<TraverseDataInfo>& rows);

/// Appends the rows, as `VRDTraverseDataCollcetion::read`, which it is without a look.
void readTraverse(std::istream& stream, std::vector<TraverseDataInfo>& rows, TraverseLook const& look);

/// The rows of a traverse file, and with them what `inspectTraverseText` finds in it: in one pass.
class InspectedTraverse : public VRDTraverseDataCollcetion {
 public:
  using VRDTraverseDataCollcetion::read;
  void read(std::istream& stream) override;

  FieldTextCheck text;
};

}  // namespace kvn::detail
