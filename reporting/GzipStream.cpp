#include "reporting/GzipStream.h"

#include <new>

namespace pdx {
namespace {

constexpr int gzipWindow = 15 + 16;  // the largest window, with the gzip header and trailer
constexpr int memoryLevel = 8;
constexpr size_t pieceSize = 1 << 20;  // of the packed bytes

}  // namespace

GzipStream::GzipStream() {
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, gzipWindow, memoryLevel, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
}

GzipStream::~GzipStream() { deflateEnd(&stream); }

std::string GzipStream::finish() {
    pack({}, Z_FINISH);
    std::string whole;
    size_t size = 0;
    for (const std::string& piece : packed) size += piece.size();
    whole.reserve(size);
    for (; !packed.empty(); packed.pop_front()) whole += packed.front();
    return whole;
}

void GzipStream::pack(std::string_view bytes, int flush) {
    // zlib only reads the input, but declares it without const.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    do {
        stream.next_out = buffer.data();
        stream.avail_out = static_cast<uInt>(buffer.size());
        deflate(&stream, flush);
        keep({reinterpret_cast<const char*>(buffer.data()), buffer.size() - stream.avail_out});
    } while (stream.avail_out == 0);
}

void GzipStream::keep(std::string_view bytes) {
    if (bytes.empty()) return;  // as after most writes
    if (packed.empty() || packed.back().size() + bytes.size() > pieceSize) packed.emplace_back().reserve(pieceSize);
    packed.back() += bytes;
}

}  // namespace pdx
