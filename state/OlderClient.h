// The maker's older client, Bastion, as far as an installer has to know it.
#pragma once

#include <string>

namespace pdx {

/// Whether the older client has finished installing. What its marker holds does not matter as long as it is not empty:
/// a number counts as its digits, so 0 too means installed.
bool isBastionInstalled();

/// Tells the Tally service that something of the move was shown or pressed (state/rules/MeridianMessages.h has the
/// words); trackingTag is the migration's group. Any thread; does not wait.
void sendMeridianMessageEvent(const std::string& id, const std::string& destination, const std::string& page,
                              const std::string& status, const std::string& trackingTag);

}  // namespace pdx
