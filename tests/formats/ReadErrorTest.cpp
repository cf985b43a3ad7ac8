// A stream that breaks off is no file that ends, whichever reader is at work.
#include "support/Support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <functional>
#include <istream>
#include <sstream>
#include <streambuf>
#include <string>

namespace {

using namespace kvn;

/// Gives its bytes and then an error, as a disk may.
class BreakingBuffer : public std::streambuf {
 public:
  explicit BreakingBuffer(std::string text) : bytes(std::move(text)) {
    setg(bytes.data(), bytes.data(), bytes.data() + bytes.size());
  }

 protected:
  int_type underflow() override { throw std::runtime_error("input/output error"); }
  pos_type seekpos(pos_type place, std::ios_base::openmode) override {
    setg(eback(), eback() + off_type(place), egptr());
    return place;
  }

 private:
  std::string bytes;
};

TEST(EveryReader, TellsAReadErrorFromTheEnd) {
  constexpr char const* kRowsText = "STA,A,1.5,,1000,1000,50\nSC,B,1.6,,0.0000,90.0000,100,0,0,0\n";
  constexpr char const* kCosaText = "2,3,2\nA,1000,1000\nA\nB,L,0.0000\n";
  struct Case {
    char const* reader;
    std::string text;
    std::function<void(std::istream&)> read;
  };
  Case const cases[] = {
      {"traverse", kRowsText, [](std::istream& in) { VRDTraverseDataCollcetion().read(in); }},
      {"job", "JOB J\nINST I\nSTN A,1.5,\n", [](std::istream& in) { LQFTraverseDataCollection().read(in); }},
      {"job, at once", "", [](std::istream& in) { LQFTraverseDataCollection().read(in); }},
      {"network", kCosaText, [](std::istream& in) { CosaCollection().read(in); }},
      {"network, with care", kCosaText, [](std::istream& in) { CarefulCosaCollection().read(in); }},
      {"naming the line", kRowsText,
       [](std::istream& in) {
         VRDTraverseDataCollcetion rows;
         readNamingTheLine(rows, in);
       }},
      {"looking at the text", kRowsText, [](std::istream& in) { inspectTraverseText(in); }},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.reader);
    std::istringstream whole(c.text);
    if (!c.text.empty()) {
      EXPECT_NO_THROW(c.read(whole));
    }
    BreakingBuffer buffer(c.text);
    std::istream broken(&buffer);
    EXPECT_THAT(test::failureOf<DataException>([&] { c.read(broken); }),
                testing::HasSubstr("the file could not be read to its end"));
  }
}

}  // namespace
