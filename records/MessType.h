// Severity of a message to the host.
#pragma once

namespace kvn {

enum MessType {
  Info,     ///< something was done
  Warning,  ///< something the user should look at; the work went on
  Error,    ///< something failed
};

}  // namespace kvn
