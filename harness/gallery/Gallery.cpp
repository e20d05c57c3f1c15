// Pictures and facts of all pages: gallery.exe TARGET LANGUAGE... writes TARGET\LANGUAGE\PAGE.png and PAGE.json. Prints
// a line a language; ends with code 1 if a page does not come or a file cannot be written.
#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "harness/gallery/PageFacts.h"
#include "harness/gallery/Pages.h"
#include "harness/ui/Snapshot.h"
#include "platform/Text.h"

namespace {

namespace fs = std::filesystem;

void write(const nlohmann::json& facts, const fs::path& file) {
    std::ofstream out(file, std::ios::binary);
    out << facts.dump(1) << '\n';
    if (!out.flush()) throw std::runtime_error("cannot write " + file.string());
}

void makePictures(const fs::path& folder, const std::wstring& language, const pdx::PublishedNames& names,
                  pdx::GlyphCheck& glyphs) {
    fs::create_directories(folder);
    int pages = 0;
    pdx::visitPages(language, [&](pdx::GalleryDialog& dialog, const std::string& page) {
        const pdx::Snapshot picture(dialog.GetHandle());
        if (!picture.SavePng((folder / (page + ".png")).wstring())) throw std::runtime_error("no picture of " + page);
        write(pdx::pageFacts(dialog, names, glyphs), folder / (page + ".json"));
        ++pages;
    });
    std::printf("%s: %d pages\n", pdx::toUtf8(language).c_str(), pages);
    std::fflush(stdout);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc < 3) {
        std::printf("usage: gallery.exe TARGET LANGUAGE...\n");
        return 1;
    }
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    pdx::startGraphics();
    // A pointer over a button would change its look.
    SetCursorPos(0, 0);
    const auto names = std::make_shared<pdx::PublishedNames>();
    pdx::g_accessibleNames.set(names);
    pdx::GlyphCheck glyphs;
    try {
        for (int i = 2; i < argc; ++i) makePictures(fs::path(argv[1]) / argv[i], argv[i], *names, glyphs);
    } catch (const std::exception& error) {
        std::printf("failed: %s\n", error.what());
        return 1;
    }
    pdx::g_accessibleNames.clear();
    CoUninitialize();
    return 0;
}
