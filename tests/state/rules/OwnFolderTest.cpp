#include <gtest/gtest.h>

#include "state/rules/OwnFolder.h"

namespace pdx {
namespace {

TEST(OwnFolder, IsAFullPathBelowADriveAndNoneOfTheSystems) {
    const SystemFolder system[] = {{L"C:\\Windows", allBelow},      {L"C:\\Program Files", 0}, {L"C:\\Users", 1},
                                   {L"C:\\Users\\ann\\Desktop", 0}, {L"E:\\Data\\Music", 0},   {L"", allBelow}};
    const struct {
        const wchar_t* folder;
        bool own;
    } rows[] = {
        {L"C:\\Program Files\\Palisade\\", true},
        {L"D:/Games/Palisade", true},
        {L"D:\\Palisade", true},
        {L"C:\\Users\\ann\\Games", true},
        {L"C:\\Windows2", true},
        {L"E:\\Data", false},
        {L"\\Device\\HarddiskVolume1\\Palisade", false},
        {L"", false},
        {L"C:", false},
        {L"C:\\", false},
        {L"D:\\ \\", false},
        {L"\\\\server\\share\\Palisade", false},
        {L"\\\\?\\D:\\Palisade", false},
        {L"Pa\\Games", false},
        {L"C:Games\\Palisade", false},
        {L"\\Palisade", false},
        {L"D:\\Palisade\\..", false},
        {L"D:\\.\\Palisade", false},
        {L"D:\\Games\\.. \\Palisade", false},
        {L"C:\\Program Files::$INDEX_ALLOCATION", false},
        {L"C:\\program files\\", false},
        {L"C:\\Program Files. .", false},
        {L"c:\\WINDOWS\\SysWOW64\\drivers", false},
        {L"C:\\Users\\other", false},
        {L"C:\\Users\\ann\\Desktop", false},
    };
    for (const auto& row : rows) EXPECT_EQ(isOwnFolder(row.folder, system), row.own) << row.folder;
}

TEST(OwnVolumePath, IsBelowAVolumeWithOrWithoutALetter) {
    const SystemFolder system[] = {{L"\\Device\\HarddiskVolume1\\Windows", allBelow}, {L"", 0}};
    const struct {
        const wchar_t* path;
        bool own;
    } rows[] = {
        {L"\\Device\\RamDisk0\\Palisade", true},
        {L"\\Device\\HarddiskVolume2\\Windows", true},
        {L"\\Device\\HarddiskVolume1\\WINDOWS\\System32", false},
        {L"\\Device\\HarddiskVolume1\\", false},
        {L"\\Device\\HarddiskVolume1", false},
        {L"\\Device\\Nested\\Volume\\", false},
        {L"\\Device\\HarddiskVolume2\\Palisade:stream", false},
        {L"\\Device\\Mup\\server\\share\\Palisade", false},
        {L"\\Other\\HarddiskVolume1\\Palisade", false},
        {L"Device\\HarddiskVolume1\\Palisade", false},
        {L"C:\\Games\\Palisade", false},
        {L"", false},
    };
    for (const auto& row : rows) EXPECT_EQ(isOwnVolumePath(row.path, system), row.own) << row.path;
}

TEST(InProfile, ReplacesOnlyTheVariableOfTheProfile) {
    const std::wstring profile = L"D:\\Users\\ann";
    EXPECT_EQ(inProfile(L"%UserProfile%\\Music", profile), L"D:\\Users\\ann\\Music");
    for (const wchar_t* other : {L"E:\\Music", L"%USERPROFILES%\\Music", L"%HOMEPATH%\\Music", L""})
        EXPECT_EQ(inProfile(other, profile), other);
}

}  // namespace
}  // namespace pdx
