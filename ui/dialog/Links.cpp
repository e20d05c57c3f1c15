// The links in marked-up text, and the legal documents that they open.
#include <windows.h>

#include <shellapi.h>
#include <shlwapi.h>

#include "config/Settings.h"
#include "config/Translator.h"
#include "platform/Paths.h"
#include "platform/Text.h"
#include "platform/Url.h"
#include "ui/dialog/BootstrapperDialog.h"
#include "ui/dialog/rules/LinkTargets.h"
#include "ui/dialog/rules/PromptTexts.h"

namespace pdx {
namespace {

void openWithShell(const std::wstring& target) {
    ShellExecuteW(nullptr, L"open", target.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

/// The path of a file that ships with the program: in the running program's folder, else in the library's. The engine
/// runs a copy of the program from a temporary folder, and unpacks the bundle's files into the library's folder.
std::wstring shippedFile(const std::wstring& name) {
    const std::wstring program = getProcessFilePath();
    const size_t slash = program.rfind(L'\\');
    std::wstring file = slash == std::wstring::npos ? std::wstring() : program.substr(0, slash + 1) + name;
    const std::wstring unpacked = getModuleFilePath(name);
    return !PathFileExistsW(file.c_str()) && PathFileExistsW(unpacked.c_str()) ? unpacked : file;
}

}  // namespace

MessageResult BootstrapperDialog::OnNotify(LPARAM notification) {
    const auto& link = *reinterpret_cast<const LinkNotification*>(notification);
    if (link.code != linkActivated || (link.idFrom != IDC_TITLE && link.idFrom != IDC_BODY)) return unhandled();
    const std::wstring href = link.href;
    const HttpUrl url = parseUrl(toUtf8(href));
    switch (linkAction(href, url.scheme, url.path)) {
        case LinkAction::open:
            openWithShell(href);
            break;
        case LinkAction::userAgreement:
            run.telemetry().sendMeridianStartClick(startUserAgreement);
            OpenLegalDocument(userAgreementDocument);
            break;
        case LinkAction::privacyPolicy:
            OpenLegalDocument(privacyDocument);
            break;
        case LinkAction::showError:
            ShowPrompt(unknownErrorPrompt);
            break;
        case LinkAction::nothing:
            break;
    }
    return unhandled();  // the label does not look at the answer
}

void BootstrapperDialog::OpenLegalDocument(std::wstring_view type) {
    const auto translator = g_translator.get();
    const std::wstring language = translator ? translator->siteLanguage({}) : L"en";
    const bool online = run.isThinInstaller() || type == privacyDocument;
    const std::wstring target = online ? onlineLegalDocument(getConfigWideString("legal.url"), type, language)
                                       : shippedFile(localLegalDocument(type, language));
    if (target.empty())
        ShowPrompt(unknownErrorPrompt);
    else
        openWithShell(target);
}

}  // namespace pdx
