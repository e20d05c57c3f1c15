#include "ui/dialog/PagePictures.h"

#include "platform/ComApartment.h"

namespace pdx {

constinit ServiceHolder<PagePictures> g_pagePictures;

PagePictures::PagePictures()
    : sizeGiven(CreateEventW(nullptr, TRUE, FALSE, nullptr)), preparation([this] { prepare(); }) {}

PagePictures::~PagePictures() { SetEvent(sizeGiven.get()); }

void PagePictures::prepare() {
    // Waits, because the UI thread prepares itself until the size is known. On two processors a second busy thread
    // would delay that or the check of the certificate.
    WaitForSingleObject(sizeGiven.get(), INFINITE);
    if (windowSize == Size{}) return;
    ComApartment apartment;  // for the codecs
    apartment.start(COINIT_MULTITHREADED);
    startGraphics();
    const std::unique_ptr<Bitmap> background = LoadPicture(backgroundPictureNumber);
    pictures[logoPictureNumber] = LoadPicture(logoPictureNumber);
    // The original is released: it is five times as large, and the window never changes its size.
    if (background) scaledBackground = scalePicture(*background, windowSize);
}

void PagePictures::setWindowSize(Size size) {
    if (windowSize == Size{}) windowSize = size;
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
