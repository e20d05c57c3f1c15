#include "config/rules/SupportAddress.h"
#include "fuzz/Target.h"
#include "platform/rules/Utf8.h"
#include "state/rules/UpdateRules.h"
#include "ui/dialog/rules/LinkTargets.h"

namespace pdx::fuzz {

void url(std::string_view input) {
    Input fields(input);
    const std::string before(fields.field()), version(fields.field());
    const std::wstring wide = toWide(before);
    const size_t colon = std::min(wide.find(L':'), wide.size());
    if (linkAction(wide, wide.substr(0, colon), L"") == LinkAction::open)
        require(wide.starts_with(L'h') || wide.starts_with(L'H'), "the web alone is opened");
    const std::wstring document = onlineLegalDocument(wide, userAgreementDocument, L"en");
    require(wide.empty() == document.empty() && document.starts_with(wide.substr(0, wide.find_last_not_of(L'/') + 1)),
            "a document is on the host that is set");
    // A width after a colon may be a gigabyte.
    if (before.find(':') == std::string::npos) fillVersion(before, version);
    if (before.find_first_of("{}") != std::string::npos) return;  // they are the template's own
    require(fillVersion(before + "/{version}/a.exe", version) == before + "/" + version + "/a.exe",
            "a version arrives in the address as it is");
    const std::wstring address = toWide(version);
    const std::wstring filled = wide + (address.ends_with(L'/') ? address.substr(0, address.size() - 1) : address);
    require(fillSupportAddress(wide + L"{support}/a" + wide + L"{support}", address) == filled + L"/a" + filled,
            "an address arrives in each link as it is");
}

}  // namespace pdx::fuzz
