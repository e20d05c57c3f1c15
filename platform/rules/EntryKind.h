// The kind of a folder's entry that is open with no link followed; it decides whether a removal enters a folder.
#pragma once

#include <cstdint>
#include <string_view>

namespace pdx {

enum class EntryKind {
    elsewhere,  ///< a link led to it, so it is not the entry of that path and is not deleted
    link,       ///< is removed; its target is not
    folder,     ///< is removed once it is empty
    file,
};

/// Whether a reparse tag is a name surrogate, as those of junctions and symbolic links are. Other tags mark files whose
/// content is in a cloud or compressed. On Wine a link of the system below it has no tag, so 0 counts too.
constexpr bool isLinkTag(uint32_t reparseTag) { return reparseTag == 0 || (reparseTag & 0x20000000) != 0; }

/// The attributes and the tag are those of the open entry (FileAttributeTagInfo). Its final path must equal exactly
/// that of the trusted folder followed by the names below it, as the folder lists them. Both are empty on a volume that
/// gives no final paths; then only the tag decides.
constexpr EntryKind judgeEntry(uint32_t attributes, uint32_t reparseTag, std::wstring_view finalPath,
                               std::wstring_view expectedPath) {
    constexpr uint32_t directory = 0x10;
    constexpr uint32_t reparsePoint = 0x400;
    if (finalPath != expectedPath) return EntryKind::elsewhere;
    if ((attributes & reparsePoint) && isLinkTag(reparseTag)) return EntryKind::link;
    return attributes & directory ? EntryKind::folder : EntryKind::file;
}

}  // namespace pdx
