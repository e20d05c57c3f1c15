// The pictures of the dialog, each decoded once and no sooner than it must be.
#pragma once

#include <map>
#include <memory>
#include <span>
#include <string>

#include "platform/Engine.h"
#include "platform/Handles.h"
#include "platform/rules/CommandLine.h"
#include "platform/ServiceHolder.h"
#include "platform/Task.h"
#include "ui/toolkit/Images.h"

namespace pdx {

/// What the first page needs is made ready on a thread of its own, from the making of the object on: the background at
/// the size of the window, the logo. The others are decoded when their page comes. Made on any thread, used on the UI
/// thread, on which alone fonts and text formats are used: GDI+ refuses an object that another thread is using
/// (ObjectBusy), and the text would appear in another face.
class PagePictures {
  public:
    PagePictures();
    /// Waits for the thread, which by then does nothing but what it is in the middle of.
    ~PagePictures();
    PagePictures(const PagePictures&) = delete;
    PagePictures& operator=(const PagePictures&) = delete;

    /// Sets what the background is scaled to, which waits for it. The first size counts.
    void setWindowSize(Size size);
    /// The background at that size, null when it is missing. Waits until it is ready.
    [[nodiscard]] const Bitmap* background();
    /// A picture by its number, null when it is missing. Waits while it is being decoded.
    [[nodiscard]] const Bitmap* picture(uint16_t number);

  private:
    void prepare();

    Handle sizeGiven;  ///< or not needed any more
    Size windowSize;
    std::unique_ptr<Bitmap> scaledBackground;
    std::map<uint16_t, std::unique_ptr<Bitmap>> pictures;
    Task preparation;  // last: it works with all of the others
};

/// Those that were begun for the next dialog; null if none were.
extern ServiceHolder<PagePictures> g_pagePictures;

/// Begins to make the first page ready for the dialog of an application object, and ends with it at the latest.
class PreparedPage {
  public:
    /// A run that shows no window needs none. The arguments are those of the process, after the program.
    PreparedPage(const BOOTSTRAPPER_COMMAND& command, std::span<const std::wstring> arguments) {
        if (displayTowardsUser(command.display, command.relationType, arguments) != BOOTSTRAPPER_DISPLAY_NONE)
            g_pagePictures.set(std::make_shared<PagePictures>());
    }
    ~PreparedPage() { g_pagePictures.clear(); }
    PreparedPage(const PreparedPage&) = delete;
    PreparedPage& operator=(const PreparedPage&) = delete;
};

}  // namespace pdx
