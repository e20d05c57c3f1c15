#include "config/Resources.h"

#include <windows.h>

#include "platform/Paths.h"

namespace pdx {

ResourceData loadResource(const ResourceId& resource) {
    const auto* name = std::get_if<std::wstring>(&resource.id);
    const wchar_t* id = name ? name->c_str() : MAKEINTRESOURCEW(std::get<uint16_t>(resource.id));
    const HRSRC found = FindResourceW(libraryModule(), id, resource.type.c_str());
    if (!found) return {};
    const HGLOBAL loaded = LoadResource(libraryModule(), found);
    if (!loaded) return {};
    const auto* bytes = static_cast<const char*>(LockResource(loaded));
    const DWORD size = SizeofResource(libraryModule(), found);
    if (!bytes || size == 0) return {};
    return {bytes, size};
}

}  // namespace pdx
