#include "platform/VersionInfo.h"

#include <fmt/format.h>

#include <span>

#include "platform/rules/RecordBounds.h"
#include "platform/rules/Version.h"
#include "platform/SystemFunction.h"
#include "platform/Text.h"

namespace pdx {
namespace {

/// A language and its code page, as the version information lists them.
struct Translation {
    WORD language;
    WORD codePage;
};

/// The record's data under a name, as elements of the given type; empty if there is none. VerQueryValueW gives the size
/// of binary data in bytes, of a text in characters; `unit` is the size of an element in that measure. The file
/// contains the size, so it is bounded (countWithin).
template <typename Element>
std::span<const Element> valueOf(const std::vector<std::byte>& record, const std::wstring& name, size_t unit) {
    void* value = nullptr;
    UINT size = 0;
    if (record.empty() || !VerQueryValueW(record.data(), name.c_str(), &value, &size) || !value) return {};
    return {static_cast<const Element*>(value), countWithin(record, value, sizeof(Element), size / unit)};
}

}  // namespace

VersionInfo::VersionInfo(const std::wstring& path, Language language) {
    // Looked up, because the toolchain's import library lacks the functions with flags.
    using GetSize = DWORD(WINAPI*)(DWORD, const wchar_t*, DWORD*);
    using GetRecord = BOOL(WINAPI*)(DWORD, const wchar_t*, DWORD, DWORD, void*);
    const HMODULE library = systemLibrary(L"version.dll");
    const auto getSize = lookUp<GetSize>(library, "GetFileVersionInfoSizeExW");
    const auto getRecord = lookUp<GetRecord>(library, "GetFileVersionInfoExW");
    const bool withFlags = language == Language::neutral && getSize && getRecord;
    constexpr DWORD flags = FILE_VER_GET_NEUTRAL;
    DWORD unused = 0;
    record.resize(withFlags ? getSize(flags, path.c_str(), &unused) : GetFileVersionInfoSizeW(path.c_str(), &unused));
    const auto size = static_cast<DWORD>(record.size());
    if (size != 0 && !(withFlags ? getRecord(flags, path.c_str(), 0, size, record.data())
                                 : GetFileVersionInfoW(path.c_str(), 0, size, record.data())))
        record.clear();
}

std::optional<VS_FIXEDFILEINFO> VersionInfo::fixed() const {
    constexpr DWORD signature = 0xFEEF04BD;
    static_assert(sizeof(VS_FIXEDFILEINFO) == 52);
    const auto found = valueOf<VS_FIXEDFILEINFO>(record, L"\\", sizeof(VS_FIXEDFILEINFO));
    if (found.size() != 1 || found[0].dwSignature != signature) return std::nullopt;
    return found[0];
}

std::wstring VersionInfo::text(const std::wstring& name) const {
    for (const Translation& translation :
         valueOf<Translation>(record, L"\\VarFileInfo\\Translation", sizeof(Translation))) {
        const auto found = valueOf<wchar_t>(
            record,
            toWide(fmt::format("\\StringFileInfo\\{:04x}{:04x}\\", translation.language, translation.codePage)) + name,
            1);
        if (!found.empty()) return std::wstring(found.data(), wcsnlen(found.data(), found.size()));
    }
    return {};
}

std::wstring getFileDescription(const std::wstring& path) { return VersionInfo(path).text(L"FileDescription"); }

std::string getFileVersion(const std::wstring& path) {
    const auto fixed = VersionInfo(path, VersionInfo::Language::neutral).fixed();
    return fixed ? versionText(uint64_t{fixed->dwFileVersionMS} << 32 | fixed->dwFileVersionLS) : std::string();
}

}  // namespace pdx
