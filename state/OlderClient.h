// The maker's older client, Bastion, as far as an installer has to know it.
#pragma once

namespace pdx {

/// Whether the older client has finished installing. What its marker holds does not matter as long as it is not empty:
/// a number counts as its digits, so 0 too means installed.
bool isBastionInstalled();

}  // namespace pdx
