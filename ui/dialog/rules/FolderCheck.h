// Which folders the client may be installed into, as far as the text of the path decides.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pdx {

/// The product gets a folder of its own in whatever the user picks.
inline constexpr std::wstring_view productFolder = L"Palisade Desktop";

/// The least free space, one GiB.
inline constexpr uint64_t leastFreeBytes = 0x40000000;
constexpr bool isSpaceEnough(uint64_t freeBytes) { return freeBytes >= leastFreeBytes; }

/// Where the chooser opens for the path on show: around the product's own folder, else there.
std::wstring chooserFolder(std::wstring_view shown, std::wstring_view lastComponent);

/// Whether a folder is another one or lies under it. `lowerFolder` and `lowerOther` are lower-cased; a sibling whose
/// name only begins the same is neither.
constexpr bool isAtOrUnder(std::wstring_view lowerFolder, std::wstring_view lowerOther) {
    if (lowerOther.empty() || !lowerFolder.starts_with(lowerOther)) return false;
    return lowerFolder.size() == lowerOther.size() || lowerFolder[lowerOther.size()] == L'\\';
}

/// The folder for the product inside a chosen one: with its name appended unless it stands there already. A root
/// (isRoot) always gets it. Nothing is appended to a path of 4084 characters or more.
std::wstring productFolderIn(std::wstring_view chosen, std::wstring_view lastComponent, bool isRoot);

}  // namespace pdx
