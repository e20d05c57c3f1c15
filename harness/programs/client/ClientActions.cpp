// The sample client's custom actions.
//
// NotePreviousState reads what the package is about to take over, and hands it to the package's registry rows as
// properties, so that the old state can come back. The others carry out a scenario's script (Script.h), whose path the
// property PDXTEST_SCRIPT gives, inside Windows Installer; without a script they do nothing. BeforeFiles runs while the
// installer still plans its changes, AfterFiles as the last of the changes.
#include <windows.h>

#include <msi.h>
#include <msiquery.h>

#include <cwchar>
#include <iterator>

#include "platform/Handles.h"
#include "platform/Text.h"
#include "Script.h"

namespace {

struct MsiTraits {
    using Value = MSIHANDLE;
    static Value invalid() noexcept { return 0; }
    static void close(Value value) noexcept { MsiCloseHandle(value); }
};
using MsiRecord = pdx::UniqueHandle<MsiTraits>;

struct KeyTraits {
    using Value = HKEY;
    static Value invalid() noexcept { return nullptr; }
    static void close(Value value) noexcept { RegCloseKey(value); }
};
using Key = pdx::UniqueHandle<KeyTraits>;

constexpr DWORD waitPeriod = 50;     // milliseconds between two looks for a file
constexpr DWORD waitLimit = 60'000;  // a package that waits longer was forgotten

std::wstring property(MSIHANDLE session, const std::wstring& name) {
    DWORD size = 0;
    wchar_t none[1] = L"";
    if (MsiGetPropertyW(session, name.c_str(), none, &size) != ERROR_MORE_DATA) return {};
    std::wstring value(++size, L'\0');
    if (MsiGetPropertyW(session, name.c_str(), value.data(), &size) != ERROR_SUCCESS) return {};
    value.resize(size);
    return value;
}

std::wstring readText(const std::wstring& path) {
    const pdx::FileHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                           OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return {};
    std::string bytes(GetFileSize(file.get(), nullptr), '\0');
    DWORD read = 0;
    if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr)) return {};
    return pdx::toWide(bytes.substr(0, read));
}

bool appendText(const std::wstring& path, const std::wstring& text) {
    const pdx::FileHandle file(CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                           OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    const std::string bytes = pdx::toUtf8(text);
    DWORD written = 0;
    return file && WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

/// Zero for a text that is no number.
DWORD number(const std::wstring& text) { return std::wcstoul(text.c_str(), nullptr, 10); }

bool exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

/// One run of a script's stage. A step answers with the text to note; a step that ends the package sets `result`.
class Stage {
  public:
    Stage(MSIHANDLE session, std::wstring stageName, const std::wstring& script)
        : installer(session), name(std::move(stageName)), folder(script.substr(0, script.rfind(L'\\') + 1)) {}

    UINT run(const std::vector<client::Step>& steps) {
        for (const client::Step& step : steps) {
            const std::wstring answer = carryOut(step);
            appendText(folder + L"record.txt", name + L" " + step.verb + L" " + step.rest + L" -> " + answer + L"\n");
            if (result != ERROR_SUCCESS) break;
        }
        return result;
    }

  private:
    std::wstring carryOut(const client::Step& step) {
        static constexpr struct {
            std::wstring_view word;
            std::wstring (Stage::*act)(std::wstring);
        } verbs[] = {
            {L"say", &Stage::say},
            {L"progress", &Stage::progress},
            {L"property", &Stage::tellProperty},
            {L"dword", &Stage::dword},
            {L"exists", &Stage::tellExists},
            {L"sharing", &Stage::sharing},
            {L"mark", &Stage::mark},
            {L"wait-for", &Stage::waitFor},
            {L"fail", &Stage::failWith},
            {L"environment", &Stage::environment},
        };
        for (const auto& verb : verbs)
            if (verb.word == step.verb) return (this->*verb.act)(step.rest);
        return fail(L"no such step");
    }

    std::wstring fail(std::wstring reason, UINT code = ERROR_INSTALL_FAILURE) {
        result = code;
        return reason;
    }

    std::wstring send(INSTALLMESSAGE kind, const std::wstring& text) {
        const MsiRecord record(MsiCreateRecord(1));
        MsiRecordSetStringW(record.get(), 0, L"[1]");
        MsiRecordSetStringW(record.get(), 1, text.c_str());
        return std::to_wstring(MsiProcessMessage(installer, kind, record.get()));
    }

    std::wstring say(std::wstring rest) {
        const std::wstring kind = client::takeWord(rest);
        if (kind == L"actiondata") return send(INSTALLMESSAGE_ACTIONDATA, rest);
        if (kind == L"warning") return send(INSTALLMESSAGE_WARNING, rest);
        if (kind == L"error") return send(INSTALLMESSAGE_ERROR, rest);
        return fail(L"no such kind");
    }

    std::wstring progress(std::wstring rest) {
        const int ticks = static_cast<int>(number(client::takeWord(rest)));
        const DWORD pause = number(rest);
        const auto report = [&](int kind, int first, int second) {
            const MsiRecord record(MsiCreateRecord(4));
            const int fields[] = {kind, first, second, 0};
            for (UINT index = 0; index < std::size(fields); ++index)
                MsiRecordSetInteger(record.get(), index + 1, fields[index]);
            return MsiProcessMessage(installer, INSTALLMESSAGE_PROGRESS, record.get());
        };
        int answer = report(0, ticks, 0);
        for (int tick = 0; tick < ticks && answer != IDCANCEL; ++tick) {
            Sleep(pause);
            answer = report(2, 1, 0);
        }
        return answer == IDCANCEL ? fail(L"cancelled", ERROR_INSTALL_USEREXIT) : L"done";
    }

    std::wstring environment(std::wstring rest) {
        wchar_t value[MAX_PATH];
        const DWORD length = GetEnvironmentVariableW(rest.c_str(), value, MAX_PATH);
        return {value, length < MAX_PATH ? length : 0};
    }

    std::wstring tellProperty(std::wstring rest) { return property(installer, rest); }

    std::wstring dword(std::wstring rest) {
        const REGSAM view = client::takeWord(rest) == L"64" ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
        const std::wstring value = client::takeWord(rest);
        DWORD data = 0;
        DWORD size = sizeof(data);
        Key key;
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, rest.c_str(), 0, KEY_READ | view, key.put()) != ERROR_SUCCESS)
            return L"no key";
        const LSTATUS status = RegGetValueW(key.get(), nullptr, value.c_str(), RRF_RT_REG_DWORD, nullptr, &data, &size);
        return status == ERROR_SUCCESS ? std::to_wstring(data) : L"no value";
    }

    std::wstring tellExists(std::wstring rest) { return exists(rest) ? L"yes" : L"no"; }

    /// What others may do with a file that somebody holds: the system's error for four ways to open it.
    std::wstring sharing(std::wstring rest) {
        const std::wstring path = property(installer, rest);
        const auto open = [&](const wchar_t* way, DWORD access, DWORD share) {
            const pdx::FileHandle file(
                CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
            return std::wstring(way) + L"=" + std::to_wstring(file ? ERROR_SUCCESS : GetLastError());
        };
        constexpr DWORD all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
        return open(L"use", GENERIC_READ | GENERIC_WRITE, all) + L" " + open(L"delete", DELETE, all) + L" " +
               open(L"no-writer", GENERIC_READ, all & ~FILE_SHARE_WRITE) + L" " +
               open(L"no-reader", GENERIC_READ, all & ~FILE_SHARE_READ);
    }

    std::wstring mark(std::wstring rest) { return appendText(folder + rest, L"") ? L"done" : fail(L"not made"); }

    std::wstring waitFor(std::wstring rest) {
        for (DWORD waited = 0; waited < waitLimit; waited += waitPeriod) {
            if (exists(folder + rest)) return L"came";
            Sleep(waitPeriod);
        }
        return fail(L"never came");
    }

    std::wstring failWith(std::wstring rest) { return fail(L"failing", number(rest)); }

    MSIHANDLE installer;
    std::wstring name;
    std::wstring folder;
    UINT result = ERROR_SUCCESS;
};

UINT runStage(MSIHANDLE session, const std::wstring& stage, const std::wstring& scriptProperty) {
    const std::wstring script = property(session, scriptProperty);
    if (script.empty()) return ERROR_SUCCESS;
    return Stage(session, stage, script).run(client::stepsOf(readText(script), stage));
}

constexpr wchar_t uninstallEntries[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

std::wstring registryText(HKEY root, const std::wstring& path, REGSAM view, const wchar_t* value) {
    Key key;
    wchar_t text[1024] = L"";
    DWORD size = sizeof(text);
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ | view, key.put()) != ERROR_SUCCESS) return {};
    if (RegGetValueW(key.get(), nullptr, value, RRF_RT_REG_SZ, nullptr, text, &size) != ERROR_SUCCESS) return {};
    return text;
}

}  // namespace

extern "C" UINT WINAPI NotePreviousState(MSIHANDLE session) {
    const std::wstring entry = uninstallEntries + property(session, L"WIXBUNDLEPROVIDERKEY");
    const struct {
        const wchar_t* property;
        HKEY root;
        REGSAM view;
        std::wstring key;
        const wchar_t* value;
    } rows[] = {
        {L"PREVBASTION2", HKEY_CLASSES_ROOT, KEY_WOW64_64KEY, L"bastion2\\shell\\open\\command", L""},
        {L"PREVGATELINK", HKEY_CLASSES_ROOT, KEY_WOW64_64KEY, L"gatelink\\shell\\open\\command", L""},
        {L"PREVBASTIONCLIENT", HKEY_LOCAL_MACHINE, KEY_WOW64_32KEY, L"Software\\Bastion", L"ClientPath"},
        {L"PREVFENWICKCLIENT", HKEY_LOCAL_MACHINE, KEY_WOW64_32KEY, L"Software\\Corvane Works\\Fenwick", L"ClientPath"},
        {L"ORIGINALUNINSTALLSTRING", HKEY_LOCAL_MACHINE, KEY_WOW64_32KEY, entry, L"UninstallString"},
        {L"ORIGINALQUIETUNINSTALLSTRING", HKEY_LOCAL_MACHINE, KEY_WOW64_32KEY, entry, L"QuietUninstallString"},
    };
    for (const auto& row : rows)
        MsiSetPropertyW(session, row.property, registryText(row.root, row.key, row.view, row.value).c_str());
    return ERROR_SUCCESS;
}

extern "C" UINT WINAPI BeforeFiles(MSIHANDLE session) { return runStage(session, L"before-files", L"PDXTEST_SCRIPT"); }

// A deferred action sees one property only: the one that the package fills in its name.
extern "C" UINT WINAPI AfterFiles(MSIHANDLE session) { return runStage(session, L"after-files", L"CustomActionData"); }
