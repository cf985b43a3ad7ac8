// What several tests need.
#pragma once

#include <Kelvane.h>
#include <json/value.h>
#include <QString>
#include <QTextCodec>
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

/// A row of a table: what it is about, the text that goes in, and what comes out.
struct TextCase {
  char const *what, *text, *result;
};

/// Another local 8-bit encoding, until the end of the block.
class LocalEncoding {
 public:
  explicit LocalEncoding(char const* name) { QTextCodec::setCodecForLocale(QTextCodec::codecForName(name)); }
  LocalEncoding(LocalEncoding const&) = delete;
  LocalEncoding& operator=(LocalEncoding const&) = delete;
  ~LocalEncoding() { QTextCodec::setCodecForLocale(before); }

 private:
  QTextCodec* before = QTextCodec::codecForLocale();
};

/// A field book: two known stations, a point seen from one of them on both faces, 100 m away and 3 degrees up.
constexpr char const* kFieldBook =
    "STA,A,1.5,,1000,1000,50\nSC,B,1.6,,0.0000,90.0000,,0,0,0\nSC,P,1.6,,60.0000,87.0000,100,0,0,0\n"
    "SC,P,1.6,,240.0000,273.0000,100,0,0,0\nSC,B,1.6,,180.0000,270.0000,,0,0,0\nSTA,B,1.5,,1000,1100,50\n";

/// A network: two known points, and one that is seen from the first.
constexpr char const* kNetworkFile = "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,45.0\nP,S,70.71\n";

/// `what()` of the exception of type Failure that the call throws; "no failure" or "other failure: ..." else.
template <typename Failure>
std::string failureOf(std::function<void()> const& call) {
  try {
    call();
  } catch (std::exception const& failure) {
    std::string const text = failure.what();
    return dynamic_cast<Failure const*>(&failure) != nullptr ? text : "other failure: " + text;
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
