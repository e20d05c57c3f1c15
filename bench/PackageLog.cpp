#include "bench/PackageLog.h"

#include <iterator>

namespace pdx {

namespace {

// Windows Installer's message kinds, in the high byte of the type.
constexpr int32_t error = 0x01000000;
constexpr int32_t warning = 0x02000000;
constexpr int32_t info = 0x04000000;
constexpr int32_t actionStart = 0x08000000;
constexpr int32_t actionData = 0x09000000;
constexpr int32_t progress = 0x0A000000;
constexpr int32_t commonData = 0x0B000000;
constexpr int32_t errorStyle = 0x10;  // MB_OK | MB_ICONERROR

/// Pseudo-random numbers that do not depend on the standard library (Knuth's MMIX constants; only the high half is
/// random).
class Sequence {
  public:
    uint32_t below(uint32_t bound) {
        state = state * 6364136223846793005u + 1442695040888963407u;
        return static_cast<uint32_t>(state >> 33) % bound;
    }
    template <typename Choices>
    const auto& of(const Choices& choices) {
        return choices[below(static_cast<uint32_t>(std::size(choices)))];
    }

  private:
    uint64_t state = 20240229;
};

constexpr const wchar_t* actions[] = {L"InstallInitialize",    L"ProcessComponents", L"UnpublishFeatures",
                                      L"RemoveRegistryValues", L"InstallFiles",      L"WriteRegistryValues",
                                      L"RegisterProduct",      L"PublishFeatures",   L"StopBackgroundService"};
constexpr const wchar_t* folders[] = {
    L"C:\\Program Files (x86)\\Palisade\\", L"C:\\Program Files (x86)\\Palisade\\res\\",
    L"C:\\Program Files (x86)\\Palisade\\res\\locales\\", L"C:\\Users\\player\\AppData\\Local\\Temp\\",
    L"C:\\ProgramData\\Palisade Desktop\\"};
constexpr const wchar_t* names[] = {L"Palisade",
                                    L"libcrypto",
                                    L"Spiel\u00fcbersicht",
                                    L"\u0438\u0433\u0440\u043e\u043a",
                                    L"\u30b2\u30fc\u30e0",
                                    L"qt5core",
                                    L"updater",
                                    L"icons"};
constexpr const wchar_t* endings[] = {L".dll", L".exe", L".pak", L".json", L".qm", L".png"};

std::wstring number(Sequence& sequence, uint32_t bound) { return std::to_wstring(sequence.below(bound)); }

std::wstring fileName(Sequence& sequence) { return sequence.of(names) + number(sequence, 1000) + sequence.of(endings); }

PackageLogLine fileLine(Sequence& sequence) {
    std::vector<std::wstring> data = {fileName(sequence), number(sequence, 90000000), sequence.of(folders)};
    return {actionData, L"File: " + data[0] + L",  Directory: " + data[2] + L",  Size: " + data[1], std::move(data)};
}

PackageLogLine registryLine(Sequence& sequence) {
    std::vector<std::wstring> data = {L"\\Software\\Corvane Works\\Palisade Desktop\\" + number(sequence, 500),
                                      fileName(sequence), sequence.of(folders) + fileName(sequence)};
    return {actionData, L"Key: " + data[0] + L", Name: " + data[1] + L", Value: " + data[2], std::move(data)};
}

PackageLogLine progressLine(Sequence& sequence) {
    std::vector<std::wstring> data = {L"2", number(sequence, 2000000), L"0", L"0"};
    return {progress, L"1: 2 2: " + data[1] + L" 3: 0 4: 0 ", std::move(data)};
}

PackageLogLine actionLine(Sequence& sequence) {
    const std::wstring action = sequence.of(actions);
    return {actionStart,
            L"Action 12:" + number(sequence, 60) + L":07: " + action + L". Running " + action,
            {action, L"Running " + action, L"[1]"}};
}

/// A line of Windows Installer about its own work; one in forty has a list of properties.
PackageLogLine infoLine(Sequence& sequence) {
    std::wstring text = L"MSI (s) (" + number(sequence, 255) + L":" + number(sequence, 255) +
                        L") [12:00:00:000]: Executing op: ComponentRegister(ComponentId={4D3C2B1A-6F5E-8170-92A3-"
                        L"B4C5D6E7F809},KeyPath=" +
                        sequence.of(folders) + fileName(sequence) + L",State=3,,Disk=1,SharedDllRefCount=0)";
    const uint32_t properties = sequence.below(40) == 0 ? 40 : 0;
    for (uint32_t i = 0; i < properties; ++i)
        text += L" PROPERTY" + number(sequence, 100) + L"=" + sequence.of(folders) + fileName(sequence);
    return {info, std::move(text), {}};
}

PackageLogLine rareLine(Sequence& sequence) {
    switch (sequence.below(5)) {
        case 0:
            return {error | errorStyle,
                    L"Error 1303. The installer has insufficient privileges to access this directory: " +
                        std::wstring(sequence.of(folders)),
                    {L"1303", sequence.of(folders)}};
        case 1:
            return {warning,
                    L"Warning 1946. Property 'System.AppUserModel.ID' could not be set on shortcut '" +
                        fileName(sequence) + L"'.",
                    {L"1946"}};
        case 2:
            return {commonData, L"1: 0 2: 1031 3: 1252 ", {L"0", L"1031", L"1252"}};
        case 3:
            return {warning, L"PDX_SET_VARIABLE:PDX_STEP_" + number(sequence, 20) + L"=" + fileName(sequence), {}};
        default:
            return {warning, L"PDX_UPDATE_CONTEXT:step" + number(sequence, 20) + L"=" + fileName(sequence), {}};
    }
}

}  // namespace

std::vector<PackageLogLine> makePackageLog(size_t lines) {
    Sequence sequence;
    std::vector<PackageLogLine> log;
    log.reserve(lines);
    while (log.size() < lines) {
        const uint32_t choice = sequence.below(1000);
        log.push_back(choice < 380   ? fileLine(sequence)
                      : choice < 560 ? registryLine(sequence)
                      : choice < 880 ? progressLine(sequence)
                      : choice < 900 ? actionLine(sequence)
                      : choice < 990 ? infoLine(sequence)
                                     : rareLine(sequence));
    }
    return log;
}

}  // namespace pdx
