#include "harness/programs/RegistryTree.h"

#include <fmt/format.h>

#include <string>

#include "platform/Text.h"

namespace pdx {

namespace {

using Json = nlohmann::ordered_json;

void addTree(Json& tree, RegistryKey key, const std::string& path) {
    tree[path] = valuesOf(key);
    key.enumerateSubKeys([&](RegistryKey& parent, const std::wstring& name) {
        if (RegistryKey below = parent.openSubKey(name, false))
            addTree(tree, std::move(below), (path.empty() ? "" : path + "\\") + toUtf8(name));
        return true;
    });
}

}  // namespace

Json valuesOf(const RegistryKey& key) {
    Json values = Json::object();
    LSTATUS status = ERROR_SUCCESS;
    for (DWORD index = 0; status == ERROR_SUCCESS; ++index) {
        wchar_t name[256], data[4096] = {};
        DWORD nameLength = 256, size = sizeof data - sizeof *data, type = REG_NONE;
        status =
            RegEnumValueW(key.get(), index, name, &nameLength, nullptr, &type, reinterpret_cast<BYTE*>(data), &size);
        if (status == ERROR_SUCCESS && type == REG_SZ) values[toUtf8(name)] = toUtf8(data);
        if (status == ERROR_SUCCESS && type == REG_DWORD)
            values[toUtf8(name)] = fmt::format("0x{:04x}{:04x}", +data[1], +data[0]);
    }
    if (status != ERROR_NO_MORE_ITEMS) values["failed"] = status;
    return values;
}

Json treeOf(RegistryKey key) {
    Json tree = Json::object();
    if (key) addTree(tree, std::move(key), "");
    return tree;
}

}  // namespace pdx
