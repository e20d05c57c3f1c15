// This process's rights, other processes, and the start of the client.
#pragma once

namespace pdx {

/// Whether this process runs with raised rights; false when its token cannot be asked.
bool isElevated();

}  // namespace pdx
