// The strings of the window, by name, in one of fourteen languages.
#pragma once

#include <string>
#include <string_view>

#include "config/StringFile.h"
#include "platform/ServiceHolder.h"

namespace pdx {

/// The language of the user's locale, one of those that there are strings for; "en" if the system gives none.
std::wstring detectLanguage();

/// The source of all text that a person sees. Filled at the start, on a thread with COM, and only read afterwards;
/// reading takes no lock, so nothing may call Load once other threads read.
class Translator {
  public:
    /// Loads the language of the user's locale.
    Translator();
    virtual ~Translator() = default;
    Translator(const Translator&) = delete;
    Translator& operator=(const Translator&) = delete;

    /// Adds a language's strings to those that are there: equal keys are replaced, keys that the new file lacks stay.
    /// The name is that of the resource, without regard to case. False, and nothing changed, when there is no such
    /// resource (logs "Failed to load localization resources for %ls") or it cannot be read (logs nothing).
    bool Load(const std::wstring& name);

    /// The string of a key, in any case of its letters; the key as it was given when there is none.
    [[nodiscard]] std::wstring translate(const std::wstring& key) const;
    /// Fills out and returns true if the key exists; otherwise leaves it alone.
    bool tryTranslate(const std::wstring& key, std::wstring& out) const;

    /// The code that the legal documents' links use for a language, by default for the one in force.
    [[nodiscard]] std::wstring siteLanguage(const std::wstring& other = {}) const;
    /// The language of the last successful Load, as it was named there; empty if none has succeeded.
    [[nodiscard]] const std::wstring& currentLanguage() const { return language; }

  private:
    std::wstring language;
    StringTable strings;
};

/// The strings, null until the application object has made them.
extern ServiceHolder<Translator> g_translator;

}  // namespace pdx
