// The registry state of the installed product, which the client's package writes on install.
#pragma once

namespace pdx {

/// Tells the client, in both views of the registry, that it is going away (IsUnavailable 1; 0 with available), gives it
/// 200 milliseconds to hear of it, and ends its helper "PalisadeConnect_microsoft.exe". Nothing takes the value back.
/// Needs raised rights; without them only the failed writes are logged.
void setUnavailable(bool available = false);

}  // namespace pdx
