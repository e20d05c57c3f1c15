// The maker's older client, Bastion: whether it is there, how it is asked to end, and how it is removed.
#pragma once

#include <string>

namespace pdx {

/// Whether the older client has finished installing. What its marker holds does not matter as long as it is not empty:
/// a number counts as its digits, so 0 too means installed.
bool isBastionInstalled();

/// Whether an install removes the older client of this machine without a question, or asks the user whether to. The
/// registry is read only where the settings leave it open.
bool removesBastion();
bool asksToRemoveBastion();

/// Whether a process of its program runs; logs "Found process %ls" at INFO.
bool isBastionRunning();

/// Asks the older client to end, and gives it 30 seconds; it is not killed. Nothing happens where its program is not
/// recorded or does not start.
void quitBastion();

/// Removes the older client: runs its uninstaller and waits until it and every temporary uninstaller that it starts
/// have ended, and 3 seconds have passed without another. Has no limit of time on purpose: a client half removed would
/// be worse than a wait. Nothing happens where its program is not recorded; an uninstaller that does not start is not
/// reported.
void waitForBastionTempUninstallers();

/// Sends to the Tally service that something of the migration was shown or pressed (state/rules/MeridianMessages.h has
/// the words); trackingTag is the migration's group. Any thread; does not wait.
void sendMeridianMessageEvent(const std::string& id, const std::string& destination, const std::string& page,
                              const std::string& status, const std::string& trackingTag);

}  // namespace pdx
