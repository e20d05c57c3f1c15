#include "ui/dialog/rules/InstallFolder.h"

namespace pdx {
namespace {

constexpr size_t bufferSize = 4096;
/// The room that is kept behind the path.
constexpr size_t reserve = 12;

}  // namespace

std::wstring productFolderIn(std::wstring_view chosen, std::wstring_view lastComponent, bool isRoot) {
    std::wstring folder(chosen);
    if (folder.size() + reserve >= bufferSize || (!isRoot && lastComponent == productFolder)) return folder;
    if (!folder.ends_with(L'\\')) folder += L'\\';
    return folder += productFolder;
}

}  // namespace pdx
