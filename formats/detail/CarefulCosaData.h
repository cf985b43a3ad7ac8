// CarefulCosaCollection::Data: what a careful reader and writer of network files keeps.
#pragma once

#include "formats/CarefulCosaCollection.h"

#include <utils/detail/PrivateData.h>

#include <vector>

namespace kvn {

struct KELVANE_PRIVATE CarefulCosaCollection::Data {
  KELVANE_LATER_MEMBER

  bool tellsFindings = true;
  bool keepsObservations = false;
  bool takesPlanned = false;
  bool writesObservations = false;
  PlaneNetwork observed;
  std::vector<FieldFinding> findings;
};

}  // namespace kvn
