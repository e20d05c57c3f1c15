// What a test has to itself: a folder, registry keys, variables of the environment.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/Handles.h"
#include "platform/Paths.h"
#include "platform/Registry.h"

namespace pdx {

/// An empty folder below the temporary one, deleted with all that is in it when the test ends.
class TestFolder {
  public:
    TestFolder() {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        folder = std::filesystem::path(getTempPath()) / (std::string(test->test_suite_name()) + "." + test->name());
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    [[nodiscard]] std::wstring path(const std::wstring& name = {}) const {
        return name.empty() ? folder.wstring() : (folder / name).wstring();
    }
    /// Makes a file, and the folders it lies in.
    std::wstring addFile(const std::wstring& name, const std::string& content = "x") const {
        std::filesystem::create_directories((folder / name).parent_path());
        std::ofstream(folder / name, std::ios::binary) << content;
        return path(name);
    }

  private:
    std::filesystem::path folder;
};

/// Restores the current folder of the process.
class CurrentFolder {
  public:
    CurrentFolder() { GetCurrentDirectoryW(MAX_PATH, before); }
    ~CurrentFolder() { SetCurrentDirectoryW(before); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

  private:
    wchar_t before[MAX_PATH];
};

/// Keys of HKEY_LOCAL_MACHINE that are in neither view when a test begins, nor when it ends.
class TestKeys {
  public:
    explicit TestKeys(std::vector<std::wstring> given) : keys(std::move(given)) { clear(); }
    ~TestKeys() { clear(); }
    TestKeys(const TestKeys&) = delete;
    TestKeys& operator=(const TestKeys&) = delete;

    void clear() const {
        for (const RegistryView view : {view32, view64})
            for (const std::wstring& key : keys) RegistryKey::localMachine(view).deleteTree(key);
    }

  private:
    std::vector<std::wstring> keys;
};

/// Sets a variable of the environment for the time of a test.
class ScopedVariable {
  public:
    ScopedVariable(const wchar_t* variable, const std::wstring& value)
        : name(variable), before(getEnvironmentText(variable)) {
        SetEnvironmentVariableW(name, value.c_str());
    }
    ~ScopedVariable() { SetEnvironmentVariableW(name, before.empty() ? nullptr : before.c_str()); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

  private:
    const wchar_t* name;
    std::wstring before;
};

inline FileHandle holdFile(const std::wstring& path, DWORD access, DWORD share) {
    return FileHandle(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
}

inline std::string readFile(const std::wstring& path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace pdx
