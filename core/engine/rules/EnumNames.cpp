#include "core/engine/rules/EnumNames.h"

#include <fmt/format.h>

#include <cstddef>

namespace pdx {
namespace {

constexpr const char* invalid = "<INVALID>";

template <size_t count>
const char* nameIn(const char* const (&names)[count], int32_t value) {
    return value >= 0 && static_cast<size_t>(value) < count ? names[value] : invalid;
}

constexpr const char* actionStates[] = {
    "BOOTSTRAPPER_ACTION_STATE_NONE",          "BOOTSTRAPPER_ACTION_STATE_UNINSTALL",
    "BOOTSTRAPPER_ACTION_STATE_INSTALL",       "BOOTSTRAPPER_ACTION_STATE_ADMIN_INSTALL",
    "BOOTSTRAPPER_ACTION_STATE_MODIFY",        "BOOTSTRAPPER_ACTION_STATE_REPAIR",
    "BOOTSTRAPPER_ACTION_STATE_MINOR_UPGRADE", "BOOTSTRAPPER_ACTION_STATE_MAJOR_UPGRADE",
    "BOOTSTRAPPER_ACTION_STATE_PATCH",
};

constexpr const char* packageStates[] = {
    "BOOTSTRAPPER_PACKAGE_STATE_UNKNOWN", "BOOTSTRAPPER_PACKAGE_STATE_OBSOLETE",
    "BOOTSTRAPPER_PACKAGE_STATE_ABSENT",  "BOOTSTRAPPER_PACKAGE_STATE_CACHED",
    "BOOTSTRAPPER_PACKAGE_STATE_PRESENT", "BOOTSTRAPPER_PACKAGE_STATE_SUPERSEDED",
};

constexpr const char* relatedOperations[] = {
    "BOOTSTRAPPER_RELATED_OPERATION_NONE",         "BOOTSTRAPPER_RELATED_OPERATION_DOWNGRADE",
    "BOOTSTRAPPER_RELATED_OPERATION_MINOR_UPDATE", "BOOTSTRAPPER_RELATED_OPERATION_MAJOR_UPGRADE",
    "BOOTSTRAPPER_RELATED_OPERATION_REMOVE",       "BOOTSTRAPPER_RELATED_OPERATION_INSTALL",
    "BOOTSTRAPPER_RELATED_OPERATION_REPAIR",
};

constexpr const char* relations[] = {
    "BOOTSTRAPPER_RELATION_NONE",   "BOOTSTRAPPER_RELATION_DETECT", "BOOTSTRAPPER_RELATION_UPGRADE",
    "BOOTSTRAPPER_RELATION_ADDON",  "BOOTSTRAPPER_RELATION_PATCH",  "BOOTSTRAPPER_RELATION_DEPENDENT",
    "BOOTSTRAPPER_RELATION_UPDATE",
};

constexpr const char* requestStates[] = {
    "BOOTSTRAPPER_REQUEST_STATE_NONE",  "BOOTSTRAPPER_REQUEST_STATE_FORCE_ABSENT", "BOOTSTRAPPER_REQUEST_STATE_ABSENT",
    "BOOTSTRAPPER_REQUEST_STATE_CACHE", "BOOTSTRAPPER_REQUEST_STATE_PRESENT",      "BOOTSTRAPPER_REQUEST_STATE_REPAIR",
};

constexpr const char* featureStates[] = {
    "BOOTSTRAPPER_FEATURE_STATE_UNKNOWN", "BOOTSTRAPPER_FEATURE_STATE_ABSENT", "BOOTSTRAPPER_FEATURE_STATE_ADVERTISED",
    "BOOTSTRAPPER_FEATURE_STATE_LOCAL",   "BOOTSTRAPPER_FEATURE_STATE_SOURCE",
};

constexpr const char* errorTypes[] = {
    "BOOTSTRAPPER_ERROR_TYPE_ELEVATE",         "BOOTSTRAPPER_ERROR_TYPE_WINDOWS_INSTALLER",
    "BOOTSTRAPPER_ERROR_TYPE_EXE_PACKAGE",     "BOOTSTRAPPER_ERROR_TYPE_HTTP_AUTH_SERVER",
    "BOOTSTRAPPER_ERROR_TYPE_HTTP_AUTH_PROXY", "BOOTSTRAPPER_ERROR_TYPE_APPLY",
};

constexpr const char* applyRestarts[] = {
    "BOOTSTRAPPER_APPLY_RESTART_NONE",
    "BOOTSTRAPPER_APPLY_RESTART_REQUIRED",
    "BOOTSTRAPPER_APPLY_RESTART_INITIATED",
};

constexpr const char* cacheOperations[] = {
    "BOOTSTRAPPER_CACHE_OPERATION_COPY",
    "BOOTSTRAPPER_CACHE_OPERATION_DOWNLOAD",
    "BOOTSTRAPPER_CACHE_OPERATION_EXTRACT",
};

constexpr const char* buttonSets[] = {
    "MB_OK",    "MB_OKCANCEL",    "MB_ABORTRETRYIGNORE",  "MB_YESNOCANCEL",
    "MB_YESNO", "MB_RETRYCANCEL", "MB_CANCELTRYCONTINUE",
};

/// By the icon bits (0xF0), in steps of 0x10; 0x80 is the caller's own icon.
constexpr const char* icons[] = {
    " | <BADICON>", " | MB_ICONHAND", " | MB_ICONQUESTION", " | MB_ICONEXCLAMATION", " | MB_ICONASTERISK",
    " | <BADICON>", " | <BADICON>",   " | <BADICON>",       " | MB_USERICON",
};

/// By the default button bits (0xF00), in steps of 0x100.
constexpr const char* defaultButtons[] = {
    " | MB_DEFBUTTON1",
    " | MB_DEFBUTTON2",
    " | MB_DEFBUTTON3",
    " | MB_DEFBUTTON4",
};

}  // namespace

const char* nameOf(BOOTSTRAPPER_ACTION_STATE value) { return nameIn(actionStates, value); }
const char* nameOf(BOOTSTRAPPER_PACKAGE_STATE value) { return nameIn(packageStates, value); }
const char* nameOf(BOOTSTRAPPER_RELATED_OPERATION value) { return nameIn(relatedOperations, value); }
const char* nameOf(BOOTSTRAPPER_RELATION_TYPE value) { return nameIn(relations, value); }
const char* nameOf(BOOTSTRAPPER_REQUEST_STATE value) { return nameIn(requestStates, value); }
const char* nameOf(BOOTSTRAPPER_FEATURE_STATE value) { return nameIn(featureStates, value); }
const char* nameOf(BOOTSTRAPPER_ERROR_TYPE value) { return nameIn(errorTypes, value); }
const char* nameOf(BOOTSTRAPPER_APPLY_RESTART value) { return nameIn(applyRestarts, value); }
const char* nameOf(BOOTSTRAPPER_CACHE_OPERATION value) { return nameIn(cacheOperations, value); }

const char* nameOfBool(bool value) { return value ? "true" : "false"; }

std::string nameOfMessageBoxStyle(uint32_t style) {
    const uint32_t buttons = style & 0xF;
    const uint32_t icon = (style >> 4) & 0xF;
    const uint32_t defaultButton = (style >> 8) & 0xF;
    return fmt::format("{}{}{}", buttons < std::size(buttonSets) ? buttonSets[buttons] : invalid,
                       icon < std::size(icons) ? icons[icon] : " | <BADICON>",
                       defaultButton < std::size(defaultButtons) ? defaultButtons[defaultButton] : " | <BADDEFBTN>");
}

}  // namespace pdx
