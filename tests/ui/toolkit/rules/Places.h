// The places of texts in their window.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "ui/toolkit/rules/RunLayout.h"

namespace pdx {

struct Place {
    std::wstring text;
    float x;
    float y;
    bool operator==(const Place&) const = default;
    friend void PrintTo(const Place& place, std::ostream* out) {
        *out << std::string(place.text.begin(), place.text.end()) << " at " << place.x << " " << place.y;
    }
};

inline std::vector<Place> placesOf(const std::vector<TextRun>& runs) {
    std::vector<Place> places;
    for (const TextRun& run : runs)
        for (const PlacedText& placed : run.placed) places.push_back({placed.text, placed.x, placed.y});
    return places;
}

}  // namespace pdx
