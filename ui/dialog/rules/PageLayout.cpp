#include "ui/dialog/rules/PageLayout.h"

namespace pdx {

ButtonRow layoutButtons(Size client, const ButtonSizes& sizes, const ButtonRow& given) {
    ButtonRow row = given;
    if (sizes.first) {
        row.first.width = sizes.first->width;
        row.first.height = sizes.first->height;
        row.first.y = client.height - gapUnderButtons - row.first.height;
        row.first.x = (client.width - row.first.width) / 2;
    }
    if (sizes.second) {
        row.first.x -= (sizes.second->width + gapBetweenButtons) / 2;
        row.second = {row.first.x + row.first.width + gapBetweenButtons, row.first.y, sizes.second->width,
                      sizes.second->height};
    }
    if (sizes.third) {
        row.first.x -= (sizes.third->width + gapBetweenButtons) / 2;
        row.second.x = row.first.x + row.first.width + gapBetweenButtons;
        row.third = {row.second.x + row.second.width + gapBetweenButtons, row.first.y, sizes.third->width,
                     sizes.third->height};
    }
    return row;
}

Box fitPicture(const Box& target, Size picture) {
    if (picture.width <= 0 || picture.height <= 0) return target;
    const int32_t fitWidth = target.height * picture.width / picture.height;
    const int32_t fitHeight = target.width * picture.height / picture.width;
    if (fitWidth > target.width) return {target.x, (target.height - fitHeight) / 2, target.width, fitHeight};
    if (fitHeight > target.height) return {(target.width - fitWidth) / 2, target.y, fitWidth, target.height};
    return target;
}

std::pair<std::wstring, std::wstring> cutAtLineFeed(std::wstring_view text) {
    const size_t feed = text.find(L'\n');
    if (feed == std::wstring_view::npos) return {};
    return {std::wstring(text.substr(0, feed)), std::wstring(text.substr(feed + 1))};
}

}  // namespace pdx
