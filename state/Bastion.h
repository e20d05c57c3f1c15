// The maker's older client, Bastion: whether it is installed or runs, how it is closed, and how it is removed.
#pragma once

#include <string>

namespace pdx {

/// Whether the older client is installed: its marker holds any text but the empty one, or any number, even 0.
bool isBastionInstalled();

/// Whether the configuration has the migration from the older client on.
bool isMigrationOn();

/// Whether an install removes the older client of this machine without a question, or asks the user. The registry is
/// read only if the settings do not decide.
bool removesBastion();
bool asksToRemoveBastion();

/// Whether the older client runs; logs "Found process %ls" at INFO.
bool isBastionRunning();

/// Asks the older client to end and waits up to 30 seconds; does not terminate it. Does nothing if its program is not
/// recorded or does not start.
void quitBastion();

/// Removes the older client by its uninstaller. Waits until that and every temporary uninstaller that it starts have
/// ended, and 3 seconds have passed without another. No time limit on purpose: a client half removed would be
/// worse than a wait. Does nothing if its program is not recorded; an uninstaller that does not start is not reported.
void waitForBastionTempUninstallers();

/// Sends to the Tally service that an item of the migration was shown or pressed (words in
/// state/rules/MeridianMessages.h); trackingTag is the migration's group. Any thread; does not wait.
void sendMeridianMessageEvent(const std::string& id, const std::string& destination, const std::string& page,
                              const std::string& status, const std::string& trackingTag);

}  // namespace pdx
