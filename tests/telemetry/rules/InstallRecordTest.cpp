#include "telemetry/rules/InstallRecord.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(InstallRecord, TellsTheDriveOfAFolder) {
    const std::vector<LogicalDiskId> disks = {{"A:", ""}, {"C:", "System"}, {"D:", "Games"}};
    struct Row {
        const char* folder;
        const char* systemDrive;
        const char* driveType;
        const char* root;
    };
    const Row rows[] = {
        {"C:\\Program Files\\Palisade", "C:", "system", "C:"},
        {"D:\\Games", "C:", "data", "D:"},
        {"c:\\games", "C:", "data", ""},
        {"D:\\Games", "", "system", "D:"},
        {"\\\\server\\C:", "C:", "data", ""},
        {"", "C:", "data", ""},
        {"", "", "system", ""},
    };
    for (const Row& row : rows) {
        EXPECT_STREQ(driveTypeOf(row.folder, row.systemDrive), row.driveType) << row.folder;
        EXPECT_EQ(installRootOf(row.folder, disks), row.root) << row.folder;
    }
    EXPECT_EQ(installRootOf("C:\\x", {}), "");
}

}  // namespace
}  // namespace pdx
