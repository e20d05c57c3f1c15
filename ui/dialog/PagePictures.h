// The pictures of the dialog, each decoded once and as late as possible.
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

/// The constructor starts a thread that prepares the pictures of the first page: the background at the size of the
/// window, and the logo. The others are decoded when their page is shown. Made on any thread, used on the UI thread.
/// Fonts and text formats are used on the UI thread alone: GDI+ refuses an object that another thread is using
/// (ObjectBusy). The text would then appear in another font.
class PagePictures {
  public:
    PagePictures();
    /// Waits for the thread, which finishes the pictures if it knows the window's size.
    ~PagePictures();
    PagePictures(const PagePictures&) = delete;
    PagePictures& operator=(const PagePictures&) = delete;

    /// Sets the size for the background, for which the thread waits. Only the first call has an effect.
    void setWindowSize(Size size);
    /// The background at that size, null if it is missing. Waits until it is ready.
    [[nodiscard]] const Bitmap* background();
    /// A picture by its number, null if it is missing. Waits while it is being decoded.
    [[nodiscard]] const Bitmap* picture(uint16_t number);

  private:
    void prepare();

    Handle sizeGiven;  ///< set too when no size will be given
    Size windowSize;
    std::unique_ptr<Bitmap> scaledBackground;
    std::map<uint16_t, std::unique_ptr<Bitmap>> pictures;
    Task preparation;  // last: it uses all other members
};

/// The pictures prepared for the next dialog; null if there are none.
extern ServiceHolder<PagePictures> g_pagePictures;

/// Starts to prepare the first page of an application's dialog. The destructor frees what no dialog has taken.
class PreparedPage {
  public:
    /// Does nothing for a run that shows no window. The arguments are those of the process, after the program.
    PreparedPage(const BOOTSTRAPPER_COMMAND& command, std::span<const std::wstring> arguments) {
        if (displayTowardsUser(command.display, command.relationType, arguments) != BOOTSTRAPPER_DISPLAY_NONE)
            g_pagePictures.set(std::make_shared<PagePictures>());
    }
    ~PreparedPage() { g_pagePictures.clear(); }
    PreparedPage(const PreparedPage&) = delete;
    PreparedPage& operator=(const PreparedPage&) = delete;
};

}  // namespace pdx
