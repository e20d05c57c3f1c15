// The strings of the window, by name, in one of fourteen languages.
#pragma once

#include <string>

#include "config/StringFile.h"
#include "platform/ServiceHolder.h"

namespace pdx {

/// The language of the strings for the user's locale; "en" if the system names no locale.
std::wstring detectLanguage();

/// The source of all text that the user sees. Load needs COM, and must not be called once other threads read: reading
/// takes no lock.
class Translator {
  public:
    /// Loads the language of the user's locale.
    Translator();
    virtual ~Translator() = default;
    Translator(const Translator&) = delete;
    Translator& operator=(const Translator&) = delete;

    /// Adds a language's strings: equal keys are replaced, keys that the new file lacks stay. The name is that of the
    /// resource, without regard to case. False, with nothing changed, if the resource is missing (logs "Failed to load
    /// localization resources for %ls") or cannot be read (logs nothing).
    bool Load(const std::wstring& name);

    /// The string of a key, without regard to case; the key itself if there is none.
    [[nodiscard]] std::wstring translate(const std::wstring& key) const;
    /// Sets out and returns true if the key exists; otherwise leaves it unchanged.
    bool tryTranslate(const std::wstring& key, std::wstring& out) const;

    /// The code that the legal documents' links use for a language, by default the current one.
    [[nodiscard]] std::wstring siteLanguage(const std::wstring& other = {}) const;

  private:
    std::wstring language;  ///< the name given to the last successful Load; empty if none has succeeded
    StringTable strings;
};

/// The strings, null until the application object has made them.
extern ServiceHolder<Translator> g_translator;

}  // namespace pdx
