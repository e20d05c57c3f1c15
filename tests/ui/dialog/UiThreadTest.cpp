// The dialog on its own thread, under an engine's threads, and the shipped library with parts of it missing.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <span>
#include <utility>
#include <vector>

#include "config/Translator.h"
#include "harness/engine/LoadedLibrary.h"
#include "harness/ui/Snapshot.h"
#include "platform/Paths.h"
#include "tests/core/ApplicationProbe.h"
#include "tests/ui/dialog/Callback.h"
#include "ui/dialog/BootstrapperDialog.h"
#include "ui/toolkit/AccessibleName.h"
#include "ui/toolkit/Images.h"

namespace pdx {
namespace {

using testing_support::Callback;

/// Signalled when a window is given the name.
class NameWatch {
  public:
    explicit NameWatch(std::wstring wanted) : sink(std::make_shared<Sink>()) {
        sink->wanted = std::move(wanted);
        g_accessibleNames.set(sink);
    }
    ~NameWatch() { g_accessibleNames.clear(); }
    NameWatch(const NameWatch&) = delete;
    NameWatch& operator=(const NameWatch&) = delete;
    /// The dialog of that name's window, once its thread takes messages again.
    [[nodiscard]] HWND wait() const {
        WaitForSingleObject(sink->seen.get(), INFINITE);
        const HWND dialog = GetParent(sink->window);
        SendMessageW(dialog, WM_NULL, 0, 0);
        return dialog;
    }

  private:
    struct Sink : AccessibleNames {
        void publish(HWND named, const std::wstring& name) override {
            if (name != wanted) return;
            window = named;
            SetEvent(seen.get());
        }
        std::wstring wanted;
        std::atomic<HWND> window = nullptr;
        Handle seen{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    };
    std::shared_ptr<Sink> sink;
};

/// From OnStartup on, with the real UI thread; the engine's requests are not served.
struct StartedRun : Bench {
    StartedRun() : Bench(BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_FULL, UIThreadFunc, nullptr) {
        EXPECT_EQ(app().OnStartup(), S_OK);
    }
};

TEST(UiThread, LetsEveryCallbackGoWhenTheWindowEnds) {
    const std::pair<const char*, std::function<void(HWND)>> rows[] = {
        {"the run is over",
         [](HWND dialog) { PostThreadMessageW(GetWindowThreadProcessId(dialog, nullptr), WM_QUIT, 0, 0); }},
        {"closed twice quickly",
         [](HWND dialog) {
             for (int press = 0; press < 2; ++press)
                 PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDC_CLOSE, BN_CLICKED), 0);
         }},
    };
    for (const auto& [what, end] : rows) {
        SCOPED_TRACE(what);
        StartedRun run;
        const NameWatch prompt(BootstrapperDialog::Translate(L"installer_already_installed_title"));
        Callback asking(run.app(), WM_BA_PROMPT_ALREADY_INSTALLED);
        const HWND dialog = prompt.wait();
        Callback held(run.app(), WM_BA_CACHE_BEGIN);
        EXPECT_TRUE(held.isHeld());
        end(dialog);
        asking.thread.join();
        held.thread.join();
        EXPECT_EQ(asking.answer, 0);
        EXPECT_EQ(held.answer, 0);
        EXPECT_EQ(run.app().OnShutdown(), 0) << "its thread can be waited for";
        EXPECT_FALSE(IsWindow(dialog));
    }
}

TEST(UiThread, TakesProgressFromTwoThreadsAtOnce) {
    StartedRun run;
    const NameWatch page(BootstrapperDialog::Translate(L"installer_install_progress_title"));
    run.app().sendAppMessage(WM_BA_CACHE_BEGIN);
    const HWND bar = GetDlgItem(page.wait(), IDC_PROGRESS);
    {
        const Callback cache(run.app(), WM_BA_CACHE_ACQUIRE_PROGRESS, 1000);
        for (int time = 0; time < 1000; ++time) run.app().sendAppMessage(WM_BA_EXECUTE_PROGRESS, 0, time / 50);
    }
    run.app().sendAppMessage(WM_BA_EXECUTE_PROGRESS, 0, 77);
    EXPECT_EQ(SendMessageW(bar, PBM_GETPOS, 0, 0), 77);
    EXPECT_EQ(run.app().OnShutdown(), 0);
}

/// Notes the thread of every picture that this program decodes while it lives: all go through one import of GDI+.
class DecodeWatch {
  public:
    DecodeWatch() : slot(importOf("GdipCreateBitmapFromStream")) {
        threads.clear();
        if (slot) original = reinterpret_cast<Decode>(replace(reinterpret_cast<void*>(&noted)));
    }
    ~DecodeWatch() {
        if (slot) replace(reinterpret_cast<void*>(original));
    }
    DecodeWatch(const DecodeWatch&) = delete;
    DecodeWatch& operator=(const DecodeWatch&) = delete;
    [[nodiscard]] static std::vector<DWORD> decodingThreads() {
        const std::lock_guard hold(lock);
        return threads;
    }

  private:
    using Decode = Gdiplus::GpStatus(WINAPI*)(IStream*, Gdiplus::GpBitmap**);

    static Gdiplus::GpStatus WINAPI noted(IStream* stream, Gdiplus::GpBitmap** bitmap) {
        {
            const std::lock_guard hold(lock);
            threads.push_back(GetCurrentThreadId());
        }
        return original(stream, bitmap);
    }
    static void** importOf(const char* function) {
        auto* image = reinterpret_cast<std::byte*>(GetModuleHandleW(nullptr));
        const auto& header =
            *reinterpret_cast<IMAGE_NT_HEADERS*>(image + reinterpret_cast<IMAGE_DOS_HEADER*>(image)->e_lfanew);
        const auto& imports = header.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
        const std::span slots(reinterpret_cast<void**>(image + imports.VirtualAddress), imports.Size / sizeof(void*));
        const auto wanted = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"gdiplus.dll"), function));
        const auto found = std::ranges::find(slots, wanted);
        return wanted && found != slots.end() ? &*found : nullptr;
    }
    void* replace(void* function) const {
        DWORD before = 0;
        VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
        void* const replaced = std::exchange(*slot, function);
        VirtualProtect(slot, sizeof *slot, before, &before);
        return replaced;
    }

    static inline std::mutex lock;
    static inline std::vector<DWORD> threads;
    static inline Decode original = nullptr;
    void** slot;
};

TEST(UiThread, HasWhatThePagesNeedDecodedOnceAndBesideIt) {
    const DecodeWatch watch;
    StartedRun run;
    const NameWatch page(BootstrapperDialog::Translate(L"installer_install_progress_title"));
    run.app().sendAppMessage(WM_BA_CACHE_BEGIN);
    const HWND dialog = page.wait();
    RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    const NameWatch prompt(BootstrapperDialog::Translate(L"installer_already_installed_title"));
    Callback asking(run.app(), WM_BA_PROMPT_ALREADY_INSTALLED);
    EXPECT_EQ(prompt.wait(), dialog);
    RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    const DWORD uiThread = GetWindowThreadProcessId(dialog, nullptr);
    // Background and logo; no page has shown the others.
    const std::vector<DWORD> decoded = DecodeWatch::decodingThreads();
    ASSERT_EQ(decoded.size(), 2u);
    EXPECT_EQ(decoded[0], decoded[1]);
    EXPECT_NE(decoded[0], uiThread);
    EXPECT_NE(decoded[0], GetCurrentThreadId());
    PostThreadMessageW(uiThread, WM_QUIT, 0, 0);
    asking.thread.join();
    EXPECT_EQ(run.app().OnShutdown(), 0);
    EXPECT_EQ(DecodeWatch::decodingThreads(), decoded);
}

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
    ASSERT_NE(entry, nullptr) << std::string(cut.type, cut.type + wcslen(cut.type));
    DWORD before = 0;
    VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &before);
    entry->Size = cut.size;
    VirtualProtect(entry, sizeof *entry, before, &before);
}

/// What the welcome page of the shipped library shows.
struct Look {
    bool background = false;  ///< more colours than the plain one
    bool logo = false;
    bool title = false;
    bool named = false;  ///< the window's title is a string and not its key
    bool operator==(const Look&) const = default;
    friend void PrintTo(const Look& look, std::ostream* out) {
        *out << "background " << look.background << " logo " << look.logo << " title " << look.title << " named "
             << look.named;
    }
};

/// Whether two pictures of the same page, or a picture and a plain ground, differ in a control's place.
bool hasInk(const Snapshot& picture, HWND dialog, int32_t id, int32_t beside) {
    const Window control(GetDlgItem(dialog, id));
    const Rect place = control.GetRectIn(dialog);
    for (int32_t y = place.top; y < place.bottom; y += 2) {
        const Color ground = picture.GetPixel({beside, y});
        for (int32_t x = place.left; x < place.right; ++x)
            for (int shift = 0; shift < 24; shift += 8)
                if ((picture.GetPixel({x, y}) >> shift & 0xFF) > (ground >> shift & 0xFF) + 0x60) return true;
    }
    return false;
}

Look lookOf(HWND dialog) {
    wchar_t title[64] = L"";
    GetWindowTextW(dialog, title, 64);
    const Snapshot picture(dialog);
    Look look = {.named = std::wstring_view(title) != L"INSTALLER_WINDOW_TITLE"};
    for (int32_t y = 0; y < picture.GetSize().height; ++y)
        look.background |= picture.GetPixel({3, y}) != palette::plainBackground;
    look.logo = hasInk(picture, dialog, IDC_PICTURE, 3);
    look.title = hasInk(picture, dialog, IDC_TITLE, 3);
    return look;
}

/// This process's dialog, whatever its title.
HWND ownDialog() {
    HWND found = nullptr;
    while ((found = FindWindowExW(nullptr, found, L"#32770", nullptr)) != nullptr) {
        DWORD process = 0;
        GetWindowThreadProcessId(found, &process);
        if (process == GetCurrentProcessId()) break;
    }
    return found;
}

TEST(Library, ShowsItsWelcomePageWithoutWhatIsMissing) {
    const std::wstring file = getModuleFilePath(L"PalisadeBootstrapper.dll");
    const std::wstring language = detectLanguage();
    const wchar_t *image = L"PDX_IMAGE", *font = L"PDX_FONT", *strings = L"PDX_LOCSTRINGS";
    const std::tuple<const char*, std::vector<Cut>, Look> rows[] = {
        {"whole", {}, {true, true, true, true}},
        {"no background", {{image, backgroundPictureNumber, 0}}, {false, true, true, true}},
        {"broken pictures",
         {{image, backgroundPictureNumber, 100}, {image, logoPictureNumber, 50}},
         {false, false, true, true}},
        {"no logo", {{image, logoPictureNumber, 0}}, {true, false, true, true}},
        {"no fonts", {{font, fontNumbers[0], 0}, {font, fontNumbers[1], 500}}, {true, true, true, true}},
        {"no strings", {{strings, language, 0}}, {true, true, true, false}},
        {"strings that are no XML", {{strings, language, 1000}}, {true, true, true, false}},
    };
    for (const auto& [what, cuts, look] : rows) {
        SCOPED_TRACE(what);
        SmallEngine engine;
        for (const wchar_t* name : {L"PDX_REPAIR", L"PDX_MERIDIAN_MODE"})
            engine.variables.set(name, std::wstring(L"0"));
        BOOTSTRAPPER_COMMAND command = {};
        command.action = BOOTSTRAPPER_ACTION_INSTALL;
        command.display = BOOTSTRAPPER_DISPLAY_FULL;
        const LoadedLibrary library(file);
        ASSERT_TRUE(library);
        for (const Cut& cut : cuts) apply(cut);
        IBootstrapperApplication* app = nullptr;
        ASSERT_EQ(library.create(&engine, &command, &app), S_OK);
        EXPECT_EQ(app->OnStartup(), S_OK);
        app->OnDetectComplete(S_OK);
        const HWND dialog = ownDialog();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(lookOf(dialog), look);
        app->OnShutdown();
        EXPECT_EQ(app->Release(), 0u);
        library.destroy();
    }
}

}  // namespace
}  // namespace pdx
