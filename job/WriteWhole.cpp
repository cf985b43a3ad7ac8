#include "job/detail/WriteWhole.h"
#include "job/JobException.h"

#include <utils/FileText.h>

#include <sstream>

namespace kvn {

void detail::writeWhole(QString const& path, std::function<void(std::ostream&)> const& print) {
  std::ostringstream text;
  text.exceptions(std::ios::badbit);  // else a failed allocation would leave a part of the file
  print(text);
  utils::createFolderOf(path);
  QString const error = utils::replaceFile(path, text.str());
  if (!error.isEmpty()) throw JobException(path, error);
}

}  // namespace kvn
