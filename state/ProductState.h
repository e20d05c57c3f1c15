// The registry state that the client's package writes on install, and restoring the values that it replaced. Needs
// elevated rights; without them only the failed accesses are logged.
#pragma once

#include <string>

namespace pdx {

/// Sets IsUnavailable to 1 in both views of the registry, or to 0 if available, which no caller passes. Gives the
/// client 200 milliseconds to react, then ends its helper "PalisadeConnect_microsoft.exe". Nothing removes the value
/// again.
void setUnavailable(bool available = false);

/// Restores what Bastion or Fenwick, by its key, had recorded as its program: PrevClientPath becomes ClientPath;
/// without it ClientPath is deleted. Then deletes the key if it is empty. Does nothing without the key.
void restoreClientPath(const std::wstring& keyPath);

/// Restores the earlier command of a URL protocol. If that is empty or cannot be written, deletes the protocol.
void restoreProtocolHandler(const std::wstring& protocol, const std::wstring& command);

/// Writes a version ("12.37.0.5294") to the bundle's entry among the installed programs; missing numbers count as 0.
/// Does nothing without the entry, or for a key that cannot name one.
void writeBundleVersion(const std::wstring& providerKey, const std::wstring& version);

}  // namespace pdx
