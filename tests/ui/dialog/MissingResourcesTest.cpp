// The shipped library with parts of what it carries missing or broken.
#include <windows.h>

#include <fmt/xchar.h>
#include <gtest/gtest.h>

#include <atomic>
#include <variant>
#include <vector>

#include "config/Translator.h"
#include "harness/programs/engine/LoadedLibrary.h"
#include "harness/programs/engine/SmallEngine.h"
#include "harness/programs/Snapshot.h"
#include "platform/Handles.h"
#include "platform/Paths.h"
#include "resources/ids.h"
#include "ui/toolkit/Fonts.h"
#include "ui/toolkit/Images.h"
#include "ui/toolkit/Painting.h"

namespace pdx {
namespace {

/// A resource that the loaded library is left with only so many bytes of.
struct Cut {
    const wchar_t* type;
    std::variant<std::wstring, uint16_t> id;
    DWORD size;
};

/// The library's own record of a resource's size is a part of its mapped image; the next load reads it anew.
void apply(const Cut& cut) {
    const HMODULE library = GetModuleHandleW(L"PalisadeBootstrapper.dll");
    const auto* name = std::holds_alternative<uint16_t>(cut.id) ? MAKEINTRESOURCEW(std::get<uint16_t>(cut.id))
                                                                : std::get<std::wstring>(cut.id).c_str();
    auto* entry = reinterpret_cast<IMAGE_RESOURCE_DATA_ENTRY*>(FindResourceW(library, name, cut.type));
    ASSERT_NE(entry, nullptr);
    DWORD before = 0;
    VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &before);
    entry->Size = cut.size;
    VirtualProtect(entry, sizeof *entry, before, &before);
}

constexpr int32_t beside = 3;  // pixels from the left edge: ground and nothing else

/// What the welcome page shows, as in "background name".
std::string lookOf(HWND dialog) {
    const Snapshot picture(dialog);
    const bool plain = picture.getPixel({beside, picture.getSize().height / 2}) == palette::plainBackground;
    wchar_t name[64] = L"";
    GetWindowTextW(dialog, name, 64);
    std::string look = plain ? "" : "background ";
    return look + (std::wstring_view(name) == L"INSTALLER_WINDOW_TITLE" ? "key" : "name");
}

HWND ownDialog() {
    HWND found = nullptr;
    while ((found = FindWindowExW(nullptr, found, L"#32770", nullptr)) != nullptr) {
        DWORD process = 0;
        GetWindowThreadProcessId(found, &process);
        if (process == GetCurrentProcessId()) break;
    }
    return found;
}

TEST(Library, ShowsTheWelcomePageWithoutAMissingResource) {
    const std::wstring language = detectLanguage();
    const wchar_t *image = L"PDX_IMAGE", *font = L"PDX_FONT", *strings = L"PDX_LOCSTRINGS";
    const std::tuple<const char*, std::vector<Cut>, const char*> rows[] = {
        {"whole", {}, "background name"},
        {"no background", {{image, backgroundPictureNumber, 0}}, "name"},
        {"broken pictures", {{image, backgroundPictureNumber, 100}, {image, logoPictureNumber, 50}}, "name"},
        {"no fonts", {{font, fontNumbers[0], 0}, {font, fontNumbers[1], 500}}, "background name, other face logged"},
        {"strings that are no XML", {{strings, language, 1000}}, "background key"},
    };
    for (const auto& [what, cuts, look] : rows) {
        SCOPED_TRACE(what);
        SmallEngine engine;
        for (const wchar_t* name : {L"PDX_REPAIR", L"PDX_MERIDIAN_MODE"})
            engine.variables.set(name, std::wstring(L"0"));
        BOOTSTRAPPER_COMMAND command = {};
        command.action = BOOTSTRAPPER_ACTION_INSTALL;
        command.display = BOOTSTRAPPER_DISPLAY_FULL;
        const LoadedLibrary library(getModuleFilePath(L"PalisadeBootstrapper.dll"));
        ASSERT_TRUE(library);
        for (const Cut& cut : cuts) apply(cut);
        IBootstrapperApplication* app = nullptr;
        ASSERT_EQ(library.create(&engine, &command, &app), S_OK);
        EXPECT_EQ(app->OnStartup(), S_OK);
        app->OnDetectComplete(S_OK);
        const HWND dialog = ownDialog();
        ASSERT_NE(dialog, nullptr);
        const bool logged = engine.findLog(L"Another face").has_value();
        EXPECT_EQ(lookOf(dialog) + (logged ? ", other face logged" : ""), look);
        app->OnShutdown();
        EXPECT_EQ(app->Release(), 0u);
        library.destroy();
    }
}

/// An engine that notes which thread is the first without a face of the library's.
struct FaceEngine : SmallEngine {
    HRESULT STDMETHODCALLTYPE Log(BOOTSTRAPPER_LOG_LEVEL level, LPCWSTR message) override {
        if (std::wstring_view(message).find(L"Another face") != std::wstring_view::npos) {
            thread = GetCurrentThreadId();
            SetEvent(noted.get());
        }
        return SmallEngine::Log(level, message);
    }
    Handle noted{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::atomic<DWORD> thread = 0;
};

TEST(Library, LoadsFontsOnTheDialogsThreadBeforeTheStart) {
    FaceEngine engine;
    BOOTSTRAPPER_COMMAND command = {};
    command.display = BOOTSTRAPPER_DISPLAY_FULL;
    const LoadedLibrary library(getModuleFilePath(L"PalisadeBootstrapper.dll"));
    apply({L"PDX_FONT", fontNumbers[0], 0});
    IBootstrapperApplication* app = nullptr;
    ASSERT_EQ(library.create(&engine, &command, &app), S_OK);
    EXPECT_EQ(WaitForSingleObject(engine.noted.get(), 10'000), WAIT_OBJECT_0);
    EXPECT_EQ(app->OnStartup(), S_OK);
    EXPECT_EQ(engine.thread, GetWindowThreadProcessId(ownDialog(), nullptr));
    app->OnShutdown();
    EXPECT_EQ(app->Release(), 0u);
    library.destroy();
}

/// An engine of which no variable can be had: there is no memory for the size that it names.
struct EndlessEngine : SmallEngine {
    HRESULT STDMETHODCALLTYPE GetVariableString(LPCWSTR, LPWSTR, DWORD* size) override {
        *size = 0xFFFFFFF0;
        return HRESULT_FROM_WIN32(ERROR_MORE_DATA);
    }
};

TEST(Library, LogsAFailedCreation) {
    EndlessEngine engine;
    const BOOTSTRAPPER_COMMAND command = {};
    const LoadedLibrary library(getModuleFilePath(L"PalisadeBootstrapper.dll"));
    auto* app = reinterpret_cast<IBootstrapperApplication*>(1);
    const HRESULT hr = library.create(&engine, &command, &app);
    EXPECT_TRUE(FAILED(hr));
    EXPECT_EQ(app, nullptr);
    const auto line = engine.findLog(L": Failed to create bootstrapper application");
    ASSERT_TRUE(line);
    EXPECT_EQ(line->level, BOOTSTRAPPER_LOG_LEVEL_ERROR);
    EXPECT_TRUE(line->text.starts_with(fmt::format(L"Error 0x{:08x}", static_cast<uint32_t>(hr))));
    EXPECT_EQ(library.create(&engine, nullptr, &app), E_INVALIDARG);
    library.destroy();
    EXPECT_EQ(engine.references(), 0u);
}

}  // namespace
}  // namespace pdx
