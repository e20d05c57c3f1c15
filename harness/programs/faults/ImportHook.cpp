#include "harness/programs/faults/ImportHook.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace pdx {

namespace {

constexpr size_t codeOfRoute = 64;  // bytes; both pieces are shorter
constexpr const char* engineOperations[] = {"engine: GetVariableString",
                                            "engine: FormatString",
                                            "engine: EscapeString",
                                            "engine: Log",
                                            "engine: Detect",
                                            "engine: Plan",
                                            "engine: Apply",
                                            "engine: SetUpdate",
                                            "engine: SetVariableString",
                                            "engine: SetVariableNumeric"};

/// Machine code for this processor, byte by byte.
class Code {
  public:
    explicit Code(unsigned char* place) : at(place) {}
    Code& bytes(std::initializer_list<unsigned char> values) {
        at = std::ranges::copy(values, at).out;
        return *this;
    }
    Code& word(uint32_t value) {
        std::memcpy(at, &value, sizeof(value));
        at += sizeof(value);
        return *this;
    }
    Code& address(const void* value) { return word(reinterpret_cast<uint32_t>(value)); }
    [[nodiscard]] unsigned char* place() const { return at; }

  private:
    unsigned char* at;
};

}  // namespace

ImportHook* ImportHook::current = nullptr;

ImportHook::ImportHook()
    : routes(platformFaults().size()),
      code(static_cast<unsigned char*>(
          VirtualAlloc(nullptr, routes.size() * codeOfRoute, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE))) {
    for (const char* name : engineOperations) operations[name] = 0;
    if (!code) throw std::runtime_error("no memory for code");
    for (size_t i = 0; i < routes.size(); ++i) {
        routes[i].fault = &platformFaults()[i];
        writeCode(routes[i], code + i * codeOfRoute);
    }
    current = this;
}

ImportHook::~ImportHook() {
    current = nullptr;
    VirtualFree(code, 0, MEM_RELEASE);
}

void ImportHook::writeCode(Route& route, unsigned char* at) {
    // push route; mov eax, choose; call eax; add esp, 4; jmp eax
    route.entry = at;
    Code entry(at);
    entry.bytes({0x68}).address(&route).bytes({0xB8}).address(reinterpret_cast<void*>(choose));
    entry.bytes({0xFF, 0xD0, 0x83, 0xC4, 0x04, 0xFF, 0xE0});
    // push error; mov eax, SetLastError; call eax
    route.failure = entry.place();
    Code failure(entry.place());
    failure.bytes({0x68}).word(route.fault->error);
    failure.bytes({0xB8}).address(reinterpret_cast<void*>(SetLastError)).bytes({0xFF, 0xD0});
    // mov eax, [esp + output]; mov dword [eax], 0
    if (route.fault->output) failure.bytes({0x8B, 0x84, 0x24}).word(4 * route.fault->output).bytes({0xC7, 0}).word(0);
    // mov eax, result; xor edx, edx; ret stackBytes
    failure.bytes({0xB8}).word(route.fault->result).bytes({0x31, 0xD2, 0xC2});
    failure.bytes({static_cast<unsigned char>(route.fault->stackBytes), 0});
}

ImportHook::Route* ImportHook::routeOf(std::string_view name) {
    const auto found = std::ranges::find_if(routes, [&](const auto& route) { return route.fault->function == name; });
    return found == routes.end() ? nullptr : &*found;
}

void ImportHook::attach(HMODULE library) {
    const auto base = reinterpret_cast<unsigned char*>(library);
    const auto* headers =
        reinterpret_cast<IMAGE_NT_HEADERS*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* imported = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + table.VirtualAddress);
    for (; imported->Name; ++imported) {
        const auto* names = reinterpret_cast<IMAGE_THUNK_DATA*>(base + imported->OriginalFirstThunk);
        auto* functions = reinterpret_cast<IMAGE_THUNK_DATA*>(base + imported->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++functions) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            const std::string_view name = reinterpret_cast<const char*>(
                reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData)->Name);
            void* replacement = name == "GetProcAddress" ? reinterpret_cast<void*>(findByName) : nullptr;
            if (Route* route = routeOf(name)) {
                route->original = reinterpret_cast<void*>(functions->u1.Function);
                replacement = route->entry;
            }
            DWORD before = 0;
            if (!replacement || !VirtualProtect(functions, sizeof(*functions), PAGE_READWRITE, &before)) continue;
            functions->u1.Function = reinterpret_cast<DWORD>(replacement);
            VirtualProtect(functions, sizeof(*functions), before, &before);
        }
    }
}

FARPROC WINAPI ImportHook::findByName(HMODULE library, LPCSTR name) {
    const FARPROC found = GetProcAddress(library, name);
    Route* route = found && HIWORD(name) ? current->routeOf(name) : nullptr;
    if (!route) return found;
    route->original = reinterpret_cast<void*>(found);
    return reinterpret_cast<FARPROC>(route->entry);
}

void ImportHook::arm(const Injection& chosen) {
    injection = chosen;
    armed = true;
}

bool ImportHook::falls(std::atomic<unsigned>& calls, std::string_view name) {
    if (!armed) return false;
    const unsigned call = ++calls;
    const bool chosen = name == injection.function && (injection.call == Injection::every || injection.call == call);
    if (chosen) ++injectedCalls;
    return chosen;
}

void* ImportHook::choose(Route* route) {
    if (!current->falls(route->calls, route->fault->function)) return route->original;
    if (!current->injection.slow) return route->failure;
    Sleep(route->fault->slow);
    return route->original;
}

bool ImportHook::refuses(const char* name) {
    const auto found = operations.find(std::string_view(name));
    return found != operations.end() && falls(found->second, name);
}

std::map<std::string, unsigned> ImportHook::counts() const {
    std::map<std::string, unsigned> result;
    for (const auto& route : routes)
        if (route.calls) result[route.fault->function] = route.calls;
    for (const auto& [name, calls] : operations)
        if (calls) result[name] = calls;
    return result;
}

}  // namespace pdx
