#include "ui/dialog/rules/PageFlow.h"

#include "platform/rules/ProgramErrors.h"

namespace pdx {
namespace {

struct ErrorRow {
    uint32_t code;
    ErrorText text;
};

constexpr ErrorRow errorRows[] = {
    {errorSystemTooOld, {L"INSTALLER_ERROR_OS_TITLE", L"INSTALLER_ERROR_OS"}},
    {errorSecondInstance, {L"INSTALLER_ERROR_TITLE", L"INSTALLER_ERROR_SINGLE_INSTANCE"}},
    {1336, {L"INSTALLER_ERROR_DISK_SPACE_TITLE", L"INSTALLER_ERROR_DISK_SPACE"}},
    {1601, {L"INSTALLER_ERROR_DISK_SPACE_TITLE", L"INSTALLER_ERROR_DISK_SPACE"}},
    {25000, {L"INSTALLER_ERROR_INSTALLATION-TIMEOUT_TITLE", L"INSTALLER_ERROR_INSTALLATION-TIMEOUT_BODY"}},
};
constexpr ErrorText noRights = {L"ERROR_INSTALLER_ELEVATED-PERMISSIONS_TITLE",
                                L"ERROR_INSTALLER_ELEVATED-PERMISSIONS_AUTHENTICATED_BODY"};
constexpr ErrorText unknown = {L"INSTALLER_ERROR_UNKNOWN_TITLE", L"INSTALLER_ERROR_UNKNOWN"};

}  // namespace

ErrorText errorText(uint32_t errorType, uint32_t code) {
    if (code == userExitCode && errorType == BOOTSTRAPPER_ERROR_TYPE_ELEVATE) return noRights;
    for (const ErrorRow& row : errorRows)
        if (row.code == code) return row.text;
    return unknown;
}

}  // namespace pdx
