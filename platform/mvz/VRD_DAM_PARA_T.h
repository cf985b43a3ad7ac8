// VRD_DAM_PARA_T: the datum parameters of the host product.
#pragma once

#include <array>

/// An opaque block: copied whole, never interpreted here.
struct VRD_DAM_PARA_T {
  std::array<unsigned char, 1024> bytes;
};
