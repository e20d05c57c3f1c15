// The version information of a program's file.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace pdx {

/// The version information of one file; empty if the file has none or does not exist. Logs nothing.
class VersionInfo {
  public:
    /// The record from the resource file of the user's language if there is one, or only from the file itself.
    enum class Language { users, neutral };
    explicit VersionInfo(const std::wstring& path, Language language = Language::users);

    /// The numbers of the fixed part; nothing if that is missing or malformed.
    [[nodiscard]] std::optional<VS_FIXEDFILEINFO> fixed() const;
    /// The text of that name, such as "FileDescription", in the first of the file's languages that has it.
    [[nodiscard]] std::wstring text(const std::wstring& name) const;

  private:
    std::vector<std::byte> record;
};

/// The FileDescription of a program, in the first of its languages that has one; empty without one.
std::wstring getFileDescription(const std::wstring& path);
/// The version of a program's file as "12.37.0.5294", of the file itself; empty without one. Logs nothing.
std::string getFileVersion(const std::wstring& path);

}  // namespace pdx
