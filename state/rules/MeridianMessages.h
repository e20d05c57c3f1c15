// The messages that measure the migration from the older client: what a page offers, and what was pressed.
#pragma once

#include <array>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace pdx {

inline constexpr const char* statusClick = "click";
inline constexpr const char* statusImpression = "impression";

/// A page or event that messages describe.
struct MessagePlace {
    const char* destination;
    const char* page;
};
inline constexpr MessagePlace startPage = {"your_games_overlay", "install_defaults"};
inline constexpr MessagePlace bastionOverlay = {"uninstall_bastion_overlay", "uninstall_bastion_option"};
inline constexpr MessagePlace completion = {"meridian_complete", "progress"};

inline constexpr const char* startLetsGo = "meridian_start_lets_go";
inline constexpr const char* startUserAgreement = "meridian_start_user_agreement";
inline constexpr const char* startInstallOptions = "meridian_start_install_options";
inline constexpr const char* startClose = "meridian_start_close";
inline constexpr const char* overlayUninstall = "meridian_uninstall_overlay_uninstall_bastion";
inline constexpr const char* overlayNotNow = "meridian_uninstall_overlay_not_now";
inline constexpr const char* overlayClose = "meridian_uninstall_overlay_close";
inline constexpr const char* completedUninstall = "meridian_completed_uninstall";

/// What each place offers, in the order in which its impressions are sent.
inline constexpr std::array startOffers = {startLetsGo, startUserAgreement, startInstallOptions, startClose};
inline constexpr std::array overlayOffers = {overlayUninstall, overlayNotNow, overlayClose};

/// The attributes of a message. The tag is the migration's group, which may be empty. The attributes about targets are
/// always empty, but the service requires them.
nlohmann::json meridianMessage(const std::string& id, const std::string& destination, const std::string& page,
                               const std::string& status, const std::string& trackingTag);

}  // namespace pdx
