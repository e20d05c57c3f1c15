// The registry state of the installed product, which the client's package writes on install, and how what it replaced
// is put back. Needs raised rights; without them only the failed accesses are logged.
#pragma once

#include <string>

namespace pdx {

/// Tells the client, in both views of the registry, that it is going away (IsUnavailable 1; 0 with available), gives it
/// 200 milliseconds to hear of it, and ends its helper "PalisadeConnect_microsoft.exe". Nothing takes the value back.
void setUnavailable(bool available = false);

/// Gives an older product its program back: PrevClientPath becomes ClientPath, or ClientPath goes where there is none.
/// A key with nothing left in it goes too. Nothing happens without the key.
void restoreClientPath(const std::wstring& keyPath);

/// Gives a URL protocol its earlier command back. Without one, or where it cannot be written, the protocol goes.
void restoreProtocolHandler(const std::wstring& protocol, const std::wstring& command);

/// Writes a version ("12.37.0.5294") to the bundle's entry among the installed programs; numbers that a shorter text
/// lacks count as 0. Nothing happens without the entry, or for a key that cannot name one.
void writeBundleVersion(const std::wstring& providerKey, const std::wstring& version);

}  // namespace pdx
