// The registry state of the installed product, which the client's package writes on install, and how what it replaced
// is restored. Needs elevated rights; without them only the failed accesses are logged.
#pragma once

#include <string>

namespace pdx {

/// Marks the client as unavailable in both views of the registry (IsUnavailable 1; 0 with available), gives it 200
/// milliseconds to react, and ends its helper "PalisadeConnect_microsoft.exe". Nothing removes the value again.
void setUnavailable(bool available = false);

/// Restores the program of an older product: PrevClientPath becomes ClientPath; ClientPath is deleted where there is
/// none. Of the key only an empty one is deleted: one with values or subkeys stays. Nothing happens without the key.
void restoreClientPath(const std::wstring& keyPath);

/// Restores the earlier command of a URL protocol. Without one, or where it cannot be written, the protocol is deleted.
void restoreProtocolHandler(const std::wstring& protocol, const std::wstring& command);

/// Writes a version ("12.37.0.5294") to the bundle's entry among the installed programs; numbers that a shorter text
/// lacks count as 0. Nothing happens without the entry, or for a key that cannot name one.
void writeBundleVersion(const std::wstring& providerKey, const std::wstring& version);

}  // namespace pdx
