// ByteStream: bytes in memory as a stream, without a copy of them.
#pragma once

#include <istream>
#include <streambuf>
#include <string_view>

namespace utils {

/// A buffer over bytes that somebody else keeps. Reading can go back, as in a file.
class ByteBuffer : public std::streambuf {
 public:
  explicit ByteBuffer(std::string_view bytes) {
    char* const begin = const_cast<char*>(bytes.data());  // nothing is ever put into it
    setg(begin, begin, begin + bytes.size());
  }

 protected:
  pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode which) override {
    off_type base = 0;
    if (from == std::ios_base::cur) base = gptr() - eback();
    if (from == std::ios_base::end) base = egptr() - eback();
    off_type const place = base + offset;
    bool const isInside = place >= 0 && place <= egptr() - eback() && (which & std::ios_base::in) != 0;
    if (!isInside) return pos_type(off_type(-1));
    setg(eback(), eback() + place, egptr());
    return place;
  }

  pos_type seekpos(pos_type place, std::ios_base::openmode which) override {
    return seekoff(off_type(place), std::ios_base::beg, which);
  }
};

/// The bytes must outlive the stream.
class ByteStream : private ByteBuffer, public std::istream {
 public:
  explicit ByteStream(std::string_view bytes) : ByteBuffer(bytes), std::istream(static_cast<ByteBuffer*>(this)) {}
};

}  // namespace utils
