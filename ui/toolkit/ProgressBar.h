// A progress bar with a gradient of two colours. The native control keeps range and position.
#pragma once

#include <array>

#include "ui/toolkit/Control.h"

namespace pdx {

/// In its marquee mode (indeterminate) two chunks follow each other; the first position ends the mode.
class ProgressBar : public Control {
  public:
    explicit ProgressBar(HWND window = nullptr);

    const char* GetWindowClassName() const override { return "msctls_progress32"; }
    MessageResult OnUserMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
    MessageResult OnWindowPosChanged(LPARAM position) override;
    MessageResult OnTimer(WPARAM id) override;
    MessageResult Draw(Graphics& graphics) override;

    [[nodiscard]] bool isMarquee() const { return marquee; }

  private:
    void setMarquee(bool on);
    void startTimer();

    Color gradientStart = palette::Coral[5];
    Color gradientEnd = palette::Crimson[5];
    Color trackColor = palette::Grey[6];
    bool marquee = false;
    std::array<Box, 2> chunks{};  ///< of the last step
    UINT marqueePeriodMs;
};

}  // namespace pdx
