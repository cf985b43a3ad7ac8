// Approximate coordinates for the rows of a traverse file, from their own observations.
#include "formats/INetworkDataCollection.h"
#include "formats/VRDTraverseDataCollcetion.h"
#include "map/MapShowData.h"

#include <new>
#include <string>
#include <unordered_map>

namespace kvn {

bool VRDTraverseDataCollcetion::correctData(std::vector<TraverseDataInfo>& rows) {
  MapShowData map;
  map.setNetwrok(INetworkDataCollection::TraverseDataListToNetwork(rows));
  map.setTellFindings(false);
  try {
    map.calculateApproximate();
    map.handle();
  } catch (std::bad_alloc const&) {
    throw;  // says nothing about the job
  } catch (...) {
    return false;  // a job whose points cannot be placed yet is no failure of its reading
  }
  std::unordered_map<std::string, DrawPoint const*> pointOf;
  for (DrawPoint const& point : map.getPoint()) pointOf.try_emplace(point.name, &point);
  for (TraverseDataInfo& row : rows) {
    auto const found = pointOf.find(row.name);
    if (found == pointOf.end()) continue;
    row.N = found->second->x;
    row.E = found->second->y;
  }
  return true;
}

}  // namespace kvn
