#include "ui/toolkit/rules/AreaScale.h"

#include <algorithm>
#include <vector>

namespace pdx {
namespace {

constexpr int32_t sourceBytes = 3;
constexpr int32_t targetBytes = 4;

/// The part of the source under one pixel of the target, in one direction. In units that make all lengths whole: a
/// source pixel has the length `target`, and a target pixel the length `source`.
struct Cover {
    int32_t begin;
    int32_t end;
    uint32_t first;  ///< share of the first pixel
    uint32_t inner;  ///< share of each pixel between
    uint32_t last;   ///< share of the last one, unless it is also the first

    [[nodiscard]] uint32_t share(int32_t at) const { return at == begin ? first : at + 1 == end ? last : inner; }
};

Cover coverOf(int32_t at, int32_t source, int32_t target) {
    const int32_t from = at * source, to = from + source;
    const int32_t begin = from / target, end = (to + target - 1) / target;
    const auto first = static_cast<uint32_t>(std::min((begin + 1) * target, to) - from);
    return {begin, end, first, static_cast<uint32_t>(target), static_cast<uint32_t>(to - (end - 1) * target)};
}

/// Adds a row's bytes, weighted by the share.
void addRow(std::vector<uint32_t>& sums, const uint8_t* row, uint32_t share) {
    for (size_t i = 0; i < sums.size(); ++i) sums[i] += row[i] * share;
}

}  // namespace

bool canScaleByArea(Size source, Size target) {
    return target.width > 0 && target.height > 0 && source.width >= target.width && source.height >= target.height &&
           source.width <= longestSide && source.height <= longestSide;
}

void scaleByArea(const PixelRows<const uint8_t>& source, const PixelRows<uint8_t>& target) {
    std::vector<Cover> columns;
    columns.reserve(static_cast<size_t>(target.size.width));
    for (int32_t x = 0; x < target.size.width; ++x) columns.push_back(coverOf(x, source.size.width, target.size.width));
    const auto area = static_cast<uint32_t>(source.size.width) * static_cast<uint32_t>(source.size.height);
    std::vector<uint32_t> sums(static_cast<size_t>(source.size.width) * sourceBytes);
    for (int32_t y = 0; y < target.size.height; ++y) {
        std::ranges::fill(sums, 0u);
        const Cover rows = coverOf(y, source.size.height, target.size.height);
        for (int32_t row = rows.begin; row < rows.end; ++row) addRow(sums, source.row(row), rows.share(row));
        uint8_t* pixel = target.row(y);
        for (const Cover& cover : columns) {
            uint32_t colors[sourceBytes] = {area / 2, area / 2, area / 2};
            for (int32_t column = cover.begin; column < cover.end; ++column) {
                const uint32_t* sum = &sums[static_cast<size_t>(column) * sourceBytes];
                const uint32_t share = cover.share(column);
                for (int32_t color = 0; color < sourceBytes; ++color) colors[color] += sum[color] * share;
            }
            for (int32_t color = 0; color < sourceBytes; ++color)
                pixel[color] = static_cast<uint8_t>(colors[color] / area);
            pixel[sourceBytes] = 0xFF;
            pixel += targetBytes;
        }
    }
}

}  // namespace pdx
