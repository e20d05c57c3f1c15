#include <gtest/gtest.h>

#include "state/rules/OwnFolder.h"

namespace pdx {
namespace {

TEST(OwnFolder, IsAFullPathBelowADriveAndNeitherOfTheSystemNorAboveIt) {
    const std::wstring system[] = {L"C:\\Windows\\system32", L"C:\\Program Files", L"C:\\Users\\ann", L""};
    const struct {
        const wchar_t* folder;
        bool own;
    } rows[] = {
        {L"C:\\Program Files\\Palisade\\", true},
        {L"D:/Games/Palisade", true},
        {L"D:\\Palisade", true},
        {L"\\\\server\\share\\Palisade", true},
        {L"C:\\Users\\ann\\Games", true},
        {L"C:\\Program Files (x86)", true},
        {L"", false},
        {L"C:", false},
        {L"C:\\", false},
        {L"D:\\ \\", false},
        {L"\\\\server\\share\\", false},
        {L"\\\\?\\D:\\Palisade", false},
        {L"Palisade", false},
        {L"C:Palisade", false},
        {L"\\Palisade", false},
        {L"D:\\Palisade\\..", false},
        {L"D:\\.\\Palisade", false},
        {L"C:\\program files\\", false},
        {L"c:\\WINDOWS", false},
        {L"C:\\Windows ", false},
        {L"C:\\Users", false},
    };
    for (const auto& row : rows) EXPECT_EQ(isOwnFolder(row.folder, system), row.own) << row.folder;
}

}  // namespace
}  // namespace pdx
