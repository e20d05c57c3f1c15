// The one thing in the strings that only the deployment knows.
#pragma once

#include <string>
#include <string_view>

namespace pdx {

/// The text with every placeholder replaced by the address, such as "https://support.example.com". A final "/" of the
/// address is dropped, for the path begins with one. With an empty address the link keeps its path alone, from the "/"
/// on. The dialog recognises that as a link that leads nowhere, and shows a message.
std::wstring fillSupportAddress(std::wstring text, std::wstring_view address);

}  // namespace pdx
