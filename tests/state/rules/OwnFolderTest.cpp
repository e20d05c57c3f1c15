#include <gtest/gtest.h>

#include "state/rules/OwnFolder.h"

namespace pdx {
namespace {

TEST(OwnFolder, IsAFullPathBelowADriveAndNoneOfTheSystems) {
    const SystemFolder system[] = {
        {L"C:\\Windows", allBelow}, {L"C:\\Program Files", 0}, {L"C:\\Users", 1}, {L"C:\\Users\\ann\\Desktop", 0}, {L"", 0}};
    const struct {
        const wchar_t* folder;
        bool own;
    } rows[] = {
        {L"C:\\Program Files\\Palisade\\", true},
        {L"D:/Games/Palisade", true},
        {L"D:\\Palisade", true},
        {L"C:\\Users\\ann\\Games", true},
        {L"C:\\Windows2", true},
        {L"", false},
        {L"C:", false},
        {L"C:\\", false},
        {L"D:\\ \\", false},
        {L"\\\\server\\share\\Palisade", false},
        {L"\\\\?\\D:\\Palisade", false},
        {L"Palisade", false},
        {L"C:Palisade", false},
        {L"\\Palisade", false},
        {L"D:\\Palisade\\..", false},
        {L"D:\\.\\Palisade", false},
        {L"C:\\program files\\", false},
        {L"C:\\Program Files. .", false},
        {L"c:\\WINDOWS\\SysWOW64", false},
        {L"C:\\Users\\other", false},
        {L"C:\\Users\\ann\\Desktop", false},
    };
    for (const auto& row : rows) EXPECT_EQ(isOwnFolder(row.folder, system), row.own) << row.folder;
}

}  // namespace
}  // namespace pdx
