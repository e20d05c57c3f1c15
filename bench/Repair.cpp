#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "bench/Benchmarks.h"
#include "platform/Handles.h"
#include "platform/Paths.h"
#include "platform/product/ClientPackage.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "state/InstallInfo.h"
#include "state/RepairCleanup.h"

namespace pdx {

namespace {

namespace fs = std::filesystem;

constexpr int folders = 100;
constexpr int filesEach = 200;
constexpr int componentKeys = 50000;
constexpr int ownEach = 20;  // one key in so many has a component of the package

constexpr wchar_t components[] =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\S-1-5-18\\Components";

void layOutFiles(const fs::path& root) {
    for (int folder = 0; folder < folders; ++folder) {
        const fs::path below = root / "Palisade Desktop" / std::to_string(folder);
        fs::create_directories(below);
        for (int file = 0; file < filesEach; ++file) std::ofstream(below / (std::to_string(file) + ".dat")) << "x";
    }
}

void removeFiles(const std::wstring& folder) {
    WIN32_FIND_DATAW entry;
    FindHandle search(FindFirstFileW((folder + L"\\*.*").c_str(), &entry));
    do {
        const std::wstring path = folder + L"\\" + entry.cFileName;
        if (entry.cFileName == std::wstring_view(L".") || entry.cFileName == std::wstring_view(L"..")) continue;
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
            removeFiles(path);
        else
            DeleteFileW(path.c_str());
    } while (FindNextFileW(search.get(), &entry));
    search.reset();
    RemoveDirectoryW(folder.c_str());
}

void layOutComponents() {
    const RegistryKey parent = RegistryKey::localMachine(view64).createSubKey(components, true);
    for (int key = 0; key < componentKeys; ++key) {
        wchar_t name[40];
        swprintf(name, std::size(name), L"%032X", key);
        parent.createSubKey(name, true).setValue(key % ownEach ? name : packedProductCode, L"C:\\Palisade\\file.dat");
    }
}

void removeComponents() {
    const RegistryKey parent = RegistryKey::localMachine(view64).openSubKey(components, true);
    wchar_t name[260];
    for (DWORD index = 0, size = 260;
         RegEnumKeyExW(parent.get(), index, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++index, size = 260) {
        wchar_t value[260];
        DWORD bytes = sizeof value;
        if (RegGetValueW(parent.get(), name, packedProductCode, RRF_RT_REG_SZ, nullptr, value, &bytes) == ERROR_SUCCESS)
            RegDeleteTreeW(parent.get(), name);
    }
}

/// Whether a component key of the package is left.
bool anyLeft() {
    bool left = false;
    RegistryKey::localMachine(view64)
        .openSubKey(components, true)
        .enumerateSubKeys([&](RegistryKey& key, const std::wstring& name) {
            left = left || key.getSubKeyValue(name, packedProductCode) != RegistryValue();
            return true;
        });
    return left;
}

}  // namespace

Measurements measureRepair() {
    const fs::path root = fs::path(getTempPath()) / "repair";
    layOutFiles(root);
    const double bareFiles = secondsOf([&] { removeFiles(root.wstring()); });
    layOutFiles(root);
    RegistryKey::localMachine(view64).setSubKeyValue(productKey, L"InstallLocation", root.wstring());
    const RepairRun run{L"{none}", [] { return false; }, [](RepairStep) {}, [] {}, [](const std::wstring&) {}};
    bool done = false;
    const double cleanUp = secondsOf([&] { done = removeInstalledClient(run) == RepairResult::done; });
    if (!done || fs::exists(root)) throw std::runtime_error("the clean-up left something");

    layOutComponents();
    const double bareKeys = secondsOf(removeComponents);
    layOutComponents();
    const double purge = secondsOf([] { purgeInstallInfo(view64, L"{none}"); });
    if (anyLeft()) throw std::runtime_error("the purge left something");
    return {
        {"repair_20000_files", cleanUp * 1e3, "ms", "a repair's clean-up of 20,000 files"},
        {"repair_20000_files_ratio", cleanUp / bareFiles, "x", "that to deleting them alone"},
        {"purge_50000_components", purge * 1e3, "ms", "a purge among 50,000 component keys"},
        {"purge_50000_components_ratio", purge / bareKeys, "x", "that to reading and deleting them alone"},
    };
}

}  // namespace pdx
