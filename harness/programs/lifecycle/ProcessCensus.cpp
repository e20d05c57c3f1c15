#include "harness/programs/lifecycle/ProcessCensus.h"

#include <windows.h>

#include <tlhelp32.h>
#include <winternl.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>
#include <span>
#include <stdexcept>
#include <vector>

#include "platform/Handles.h"
#include "platform/Text.h"

namespace pdx {

namespace {

constexpr ULONG extendedHandleInformation = 64;
constexpr auto lengthMismatch = static_cast<NTSTATUS>(0xC0000004);

/// An entry of the system's handle table, as NtQuerySystemInformation gives it.
struct HandleEntry {
    void* object;
    ULONG_PTR processId;
    ULONG_PTR handle;
    ULONG access;
    USHORT backTrace;
    USHORT typeIndex;
    ULONG attributes;
    ULONG reserved;
};
struct HandleTable {
    ULONG_PTR count;
    ULONG_PTR reserved;
    HandleEntry entries[1];
};

using QuerySystem = NTSTATUS(NTAPI*)(ULONG, void*, ULONG, ULONG*);
using QueryObject = NTSTATUS(NTAPI*)(HANDLE, OBJECT_INFORMATION_CLASS, void*, ULONG, ULONG*);

template <typename Function>
Function ntFunction(const char* name) {
    const auto function = reinterpret_cast<Function>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name));
    if (!function) throw std::runtime_error(std::string("ntdll.dll has no ") + name);
    return function;
}

std::vector<std::byte> handleTable() {
    static const auto query = ntFunction<QuerySystem>("NtQuerySystemInformation");
    for (std::vector<std::byte> buffer(1 << 18);; buffer.resize(buffer.size() * 2)) {
        ULONG needed = 0;
        const auto status = query(extendedHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size()), &needed);
        if (NT_SUCCESS(status)) return buffer;
        if (status != lengthMismatch) throw std::runtime_error("the system does not give its handle table");
    }
}

std::vector<HANDLE> handlesOf(DWORD processId) {
    const auto buffer = handleTable();
    const auto* table = reinterpret_cast<const HandleTable*>(buffer.data());
    const auto* entries = reinterpret_cast<const HandleEntry*>(buffer.data() + offsetof(HandleTable, entries));
    std::vector<HANDLE> handles;
    for (const auto& entry : std::span(entries, table->count))
        if (entry.processId == processId) handles.push_back(reinterpret_cast<HANDLE>(entry.handle));
    return handles;
}

std::string typeName(HANDLE handle) {
    static const auto query = ntFunction<QueryObject>("NtQueryObject");
    alignas(std::max_align_t) std::array<std::byte, 1024> buffer{};
    ULONG needed = 0;
    if (!NT_SUCCESS(query(handle, ObjectTypeInformation, buffer.data(), buffer.size(), &needed))) return "unknown";
    const auto* name = reinterpret_cast<const UNICODE_STRING*>(buffer.data());
    return toUtf8({name->Buffer, name->Length / sizeof(wchar_t)});
}

size_t threadCount() {
    const FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    size_t count = 0;
    for (BOOL more = Thread32First(snapshot.get(), &entry); more; more = Thread32Next(snapshot.get(), &entry))
        count += entry.th32OwnerProcessID == GetCurrentProcessId();
    return count;
}

}  // namespace

size_t ProcessCensus::handleCount() const {
    return std::accumulate(handles.begin(), handles.end(), size_t{0},
                           [](size_t sum, const auto& entry) { return sum + entry.second; });
}

bool ProcessCensus::within(const ProcessCensus& other) const { return excessOver(other).empty(); }

std::string ProcessCensus::excessOver(const ProcessCensus& other) const {
    std::string text;
    const auto add = [&text](const std::string& name, size_t now, size_t before) {
        if (now > before) text += (text.empty() ? "" : ", ") + name + " +" + std::to_string(now - before);
    };
    add("threads", threads, other.threads);
    for (const auto& [type, count] : handles) {
        const auto before = other.handles.find(type);
        add(type, count, before == other.handles.end() ? 0 : before->second);
    }
    return text;
}

ProcessCensus takeCensus() {
    ProcessCensus census{.threads = threadCount(), .handles = {}};
    for (const HANDLE handle : handlesOf(GetCurrentProcessId())) ++census.handles[typeName(handle)];
    return census;
}

size_t handleCountOf(unsigned long processId) { return handlesOf(processId).size(); }

ProcessCensus takeCensusWithin(const ProcessCensus& other, unsigned long bound) {
    const ULONGLONG deadline = GetTickCount64() + bound;
    for (;;) {
        auto census = takeCensus();
        if (census.within(other) || GetTickCount64() >= deadline) return census;
        Sleep(20);
    }
}

}  // namespace pdx
