#include "platform/rules/ProgramErrors.h"

#include <gtest/gtest.h>

#include <tuple>

namespace pdx {
namespace {

TEST(ProgramErrors, CombineTypeAndCode) {
    const std::tuple<BOOTSTRAPPER_ERROR_TYPE, uint32_t, uint32_t> rows[] = {
        {BOOTSTRAPPER_ERROR_TYPE_ELEVATE, 1602, 0xA0000642},
        {BOOTSTRAPPER_ERROR_TYPE_WINDOWS_INSTALLER, 1603, 0xA0010643},
        {PALISADE_ERROR_TYPE, errorSystemTooOld, 0xA7FF047E},
        {PALISADE_ERROR_TYPE, errorSecondInstance, 0xA7FF0480},
        {PALISADE_ERROR_TYPE, errorLogFileTaken, 0xA7FF0020},
        {PALISADE_ERROR_TYPE, errorFilesNotLocked, 0xA7FF0241},
        {PALISADE_ERROR_TYPE, errorRepairIncomplete, 0xA7FF0BC9},
        {PALISADE_ERROR_TYPE, 25000, 0xA7FF61A8},
        {static_cast<BOOTSTRAPPER_ERROR_TYPE>(0x7FFFFFFF), 0x80070005, 0xA7FF0005},
    };
    for (const auto& [type, code, result] : rows)
        EXPECT_EQ(formError(type, code), static_cast<Hresult>(result)) << std::hex << result;
}

}  // namespace
}  // namespace pdx
