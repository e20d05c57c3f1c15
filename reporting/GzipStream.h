// A gzip stream in memory.
#pragma once

#include <zlib.h>

#include <array>
#include <deque>
#include <string>
#include <string_view>

namespace pdx {

/// One gzip stream at the highest level. Of the unpacked bytes it holds only zlib's window and a buffer.
class GzipStream {
  public:
    /// Throws std::bad_alloc if zlib cannot be set up.
    GzipStream();
    ~GzipStream();
    GzipStream(const GzipStream&) = delete;
    GzipStream& operator=(const GzipStream&) = delete;

    void write(std::string_view bytes) { pack(bytes, Z_NO_FLUSH); }
    /// Ends the stream and returns it.
    std::string finish();

  private:
    void pack(std::string_view bytes, int flush);
    void keep(std::string_view bytes);

    z_stream stream{};
    std::array<Bytef, 65536> buffer;
    /// In pieces: a single growing text would be copied at each growth, and be in memory twice.
    std::deque<std::string> packed;
};

}  // namespace pdx
