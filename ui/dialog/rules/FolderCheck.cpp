#include "ui/dialog/rules/FolderCheck.h"

#include "platform/rules/Numbers.h"

namespace pdx {
namespace {

/// Nothing is appended to a path that leaves no more than these characters of pathCapacity. A path that leaves a few
/// more can still become too long, which browse() checks.
constexpr size_t reserve = 12;

}  // namespace

std::wstring chooserFolder(std::wstring_view shown, std::wstring_view lastComponent) {
    if (lastComponent != productFolder || lastComponent == shown) return std::wstring(shown);
    std::wstring_view around = shown.substr(0, shown.size() - lastComponent.size());
    // A drive's root keeps its backslash.
    if (around.ends_with(L'\\') && !around.ends_with(L":\\")) around.remove_suffix(1);
    return std::wstring(around);
}

std::wstring productFolderIn(std::wstring_view chosen, std::wstring_view lastComponent, bool isRoot) {
    std::wstring folder(chosen);
    if (folder.size() + reserve >= pathCapacity || (!isRoot && lastComponent == productFolder)) return folder;
    if (!folder.ends_with(L'\\')) folder += L'\\';
    return folder += productFolder;
}

}  // namespace pdx
