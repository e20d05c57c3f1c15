// The support site's address in the strings, which each deployment sets.
#pragma once

#include <string>
#include <string_view>

namespace pdx {

/// The text with every placeholder replaced by the address, such as "https://support.example.com". A final "/" of the
/// address is dropped, because the path begins with one. With an empty address the link is only the path; the dialog
/// recognises such a link and shows a message.
std::wstring fillSupportAddress(std::wstring text, std::wstring_view address);

}  // namespace pdx
