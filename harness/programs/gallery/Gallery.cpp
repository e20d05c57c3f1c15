// Pictures and facts of all pages: gallery.exe [/focus] TARGET LANGUAGE... writes TARGET\LANGUAGE\PAGE.png and
// PAGE.json. With /focus the facts also have the keyboard's way through the page, and the pictures are those of each
// control with the focus, PAGE-CONTROL.png. Prints a line a language; ends with code 1 if a page does not
// show or a file cannot be written.
#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "harness/programs/gallery/FocusWalk.h"
#include "harness/programs/gallery/PageFacts.h"
#include "harness/programs/gallery/Pages.h"
#include "harness/programs/Snapshot.h"
#include "platform/Text.h"

namespace {

namespace fs = std::filesystem;

struct Gallery {
    fs::path target;
    bool withFocus = false;
    std::shared_ptr<pdx::PublishedNames> names = std::make_shared<pdx::PublishedNames>();
    pdx::GlyphCheck glyphs{};
};

void save(const pdx::Snapshot& picture, const fs::path& file) {
    if (!picture.savePng(file.wstring())) throw std::runtime_error("cannot write " + file.string());
}

void save(const nlohmann::json& facts, const fs::path& file) {
    std::ofstream out(file, std::ios::binary);
    out << facts.dump(1) << '\n';
    if (!out.flush()) throw std::runtime_error("cannot write " + file.string());
}

void showPage(Gallery& gallery, const pdx::GalleryDialog& dialog, const fs::path& file) {
    const auto named = [&file](const std::string& ending) { return fs::path(file) += ending; };
    nlohmann::json facts = pdx::pageFacts(dialog, *gallery.names, gallery.glyphs);
    if (gallery.withFocus)
        facts["focus"] = pdx::walkFocus(dialog, [&](int32_t control, const pdx::Snapshot& picture) {
            save(picture, named("-" + std::to_string(control) + ".png"));
        });
    else
        save(pdx::Snapshot(dialog.getHandle()), named(".png"));
    save(facts, named(".json"));
}

void showLanguage(Gallery& gallery, const std::wstring& language) {
    const fs::path folder = gallery.target / language;
    fs::create_directories(folder);
    int pages = 0;
    pdx::visitPages(language, [&](const pdx::GalleryDialog& dialog, const std::string& page) {
        showPage(gallery, dialog, folder / page);
        ++pages;
    });
    std::printf("%s: %d pages\n", pdx::toUtf8(language).c_str(), pages);
    std::fflush(stdout);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    Gallery gallery;
    int next = 1;
    if (next < argc && std::wstring_view(argv[next]) == L"/focus") {
        gallery.withFocus = true;
        ++next;
    }
    if (argc - next < 2) {
        std::printf("usage: gallery.exe [/focus] TARGET LANGUAGE...\n");
        return 1;
    }
    gallery.target = argv[next++];
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    pdx::startGraphics();
    // A pointer over a button would change its look.
    SetCursorPos(0, 0);
    pdx::g_accessibleNames.set(gallery.names);
    try {
        for (; next < argc; ++next) showLanguage(gallery, argv[next]);
    } catch (const std::exception& error) {
        std::printf("failed: %s\n", error.what());
        return 1;
    }
    pdx::g_accessibleNames.clear();
    CoUninitialize();
    return 0;
}
