// What to look for when a single traverse cannot be computed.
#pragma once

#include <Kelvane.h>
#include <QString>

namespace kvn::host {

/// Why the method of `Configure::AdjustMethod` refuses the network, with the station or point and what it should have.
QString explained(AlgorithmException const& failure, int method);

}  // namespace kvn::host
