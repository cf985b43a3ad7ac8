// What several tests need.
#pragma once

#include <Kelvane.h>
#include <json/value.h>
#include <QString>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace test {

/// A System whose messages are kept; one at a time. Its configuration file is in the temporary home.
class Host {
 public:
  Host();

  std::vector<std::pair<QString, kvn::MessType>> messages;
  kvn::System system;  ///< goes first: its end may still send messages
};

/// `what()` of the exception of type Failure that the call throws; "no failure" or "other failure: ..." else.
template <typename Failure>
std::string failureOf(std::function<void()> const& call) {
  try {
    call();
  } catch (std::exception const& failure) {
    bool const asExpected = dynamic_cast<Failure const*>(&failure) != nullptr;
    return asExpected ? failure.what() : std::string("other failure: ") + failure.what();
  }
  return "no failure";
}

/// Value of a JSON document.
Json::Value json(std::string const& document);

/// The AlgorithmException that the call throws, as "text|name|index"; "no failure" when it throws none.
std::string algorithmFailureOf(std::function<void()> const& call);

/// " a0='' a1=''": attributes of an XML element.
std::string xmlAttributes(int count);

/// Path of a file of the samples folder.
QString samplePath(QString const& name);

/// Bytes of a whole file; empty when it is not there.
std::string fileBytes(QString const& path);

/// Writes a file of the test's own, in a folder that is made where it is not there.
void writeFile(QString const& path, std::string const& bytes);

}  // namespace test
