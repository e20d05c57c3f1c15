// The checks of an install folder that need only the text of its path.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pdx {

/// The name of the product's folder inside the folder that the user picks.
inline constexpr std::wstring_view productFolder = L"Palisade Desktop";

/// The least free space, one GiB.
inline constexpr uint64_t leastFreeBytes = 0x40000000;
constexpr bool isSpaceEnough(uint64_t freeBytes) { return freeBytes >= leastFreeBytes; }

/// The folder in which the chooser opens for the shown path: the parent of the product's folder, else the path itself.
std::wstring chooserFolder(std::wstring_view shown, std::wstring_view lastComponent);

/// Whether a folder is another one or is inside it. `lowerFolder` and `lowerOther` are lower-cased; a sibling whose
/// name only begins the same is neither.
constexpr bool isAtOrUnder(std::wstring_view lowerFolder, std::wstring_view lowerOther) {
    if (lowerOther.empty() || !lowerFolder.starts_with(lowerOther)) return false;
    return lowerFolder.size() == lowerOther.size() || lowerFolder[lowerOther.size()] == L'\\';
}

/// The folder for the product inside a chosen one: with productFolder appended unless the path ends in it. It is always
/// appended to a root (isRoot), and never to a path of 4084 characters or more.
std::wstring productFolderIn(std::wstring_view chosen, std::wstring_view lastComponent, bool isRoot);

}  // namespace pdx
