#include "ui/dialog/PagePictures.h"

#include "platform/ComApartment.h"
#include "ui/toolkit/Painting.h"

namespace pdx {
namespace {

/// The first use of a face in a process takes many times as long as a later one, and the first of a face that is not
/// carried, as the template's is not, makes Wine look through all that are installed.
void useFaces() {
    constexpr struct {
        const wchar_t* family;
        float size;
        int32_t style;
    } faces[] = {
        {textFace, 14, fontBold}, {textFace, 16, fontRegular}, {textFace, 20, fontBold}, {pathFace, 14, fontRegular},
        {L"", 16, fontRegular},
    };
    const Bitmap surface({1, 1});
    Graphics graphics(surface);
    ApplyQuality(graphics);
    const StringFormat format = CreateTextFormat();
    for (const auto& [family, size, style] : faces)
        graphics.MeasureString(L"Palisade", CreateFontByName(family, size, style).get(), {}, &format);
}

}  // namespace

constinit ProcessSlot<PagePictures> g_pagePictures;

PagePictures::PagePictures()
    : sizeGiven(CreateEventW(nullptr, TRUE, FALSE, nullptr)), preparation([this] { prepare(); }) {}

PagePictures::~PagePictures() { SetEvent(sizeGiven.get()); }

void PagePictures::prepare() {
    ComApartment apartment;  // for the codecs
    apartment.start(COINIT_MULTITHREADED);
    startGraphics();
    LoadPrivateFonts();
    useFaces();
    const std::unique_ptr<Bitmap> background = LoadPicture(backgroundPictureNumber);
    pictures[logoPictureNumber] = LoadPicture(logoPictureNumber);
    WaitForSingleObject(sizeGiven.get(), INFINITE);
    // The picture at its own size goes: it is five times as large, and the window never changes its size.
    if (background && windowSize != Size{}) scaledBackground = ScalePicture(*background, windowSize);
}

void PagePictures::setWindowSize(Size size) {
    windowSize = size;
    SetEvent(sizeGiven.get());
}

const Bitmap* PagePictures::background() {
    preparation.wait();
    return scaledBackground.get();
}

const Bitmap* PagePictures::picture(uint16_t number) {
    preparation.wait();
    const auto [entry, isNew] = pictures.try_emplace(number);
    if (isNew) entry->second = LoadPicture(number);
    return entry->second.get();
}

}  // namespace pdx
