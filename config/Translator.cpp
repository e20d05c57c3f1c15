#include "config/Translator.h"

#include "config/Resources.h"
#include "config/rules/Languages.h"
#include "platform/Locale.h"
#include "platform/Log.h"
#include "platform/rules/AsciiCase.h"

namespace pdx {

constinit ServiceHolder<Translator> g_translator;

std::wstring detectLanguage() { return std::wstring(languageForLocale(userLocale())); }

Translator::Translator() { Load(detectLanguage()); }

bool Translator::Load(const std::wstring& name) {
    const ResourceData file = loadResource({L"PDX_LOCSTRINGS", name});
    if (file.size == 0) {
        PDX_LOG(logInfo, "Translator::Load", "Failed to load localization resources for %ls", name);
        return false;
    }
    std::optional<StringTable> loaded = readStringFile({file.bytes, file.size});
    if (!loaded) return false;
    loaded->merge(strings);  // a key in both keeps the loaded text
    strings = std::move(*loaded);
    language = name;
    return true;
}

std::wstring Translator::translate(const std::wstring& key) const {
    std::wstring text;
    return tryTranslate(key, text) ? text : key;
}

bool Translator::tryTranslate(const std::wstring& key, std::wstring& out) const {
    const auto found = strings.find(loweredAscii<wchar_t>(key));
    if (found == strings.end()) return false;
    out = found->second;
    return true;
}

std::wstring Translator::siteLanguage(const std::wstring& other) const {
    return std::wstring(siteCodeForLanguage(other.empty() ? language : other));
}

}  // namespace pdx
