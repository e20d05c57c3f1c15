// The whole order of an error report: the callback, the status, the event, the prompt, the files, the user's consent,
// the upload.
#pragma once

#include <string>
#include <vector>

#include "core/engine/CallbackFacts.h"
#include "core/Run.h"
#include "platform/rules/ProgramErrors.h"
#include "reporting/ReportPackage.h"

namespace pdx {

/// The arguments of the engine's error callback.
struct EngineError {
    BOOTSTRAPPER_ERROR_TYPE type;
    LPCWSTR package;
    DWORD code;
    LPCWSTR text;
    DWORD uiFlags;
    TextList data;
    int recommendation;
};

/// Used on the engine's thread, except report(), which may be called on any. The run outlives the object.
class ErrorReporting {
  public:
    explicit ErrorReporting(Run& reportedRun) : run(reportedRun) {}

    /// Logs an error, updates the run's status, sends its event and shows it. Returns the prompt's answer.
    int report(const EngineError& error);
    /// The same for an error of the library. Returns its HRESULT, with which a start can fail.
    HRESULT fail(ProgramError code);
    /// Shows the status of a failed run, unless its error was shown already.
    void showFailure();

    void addFile(const std::wstring& path) { files.insert(path); }
    /// Adds a log that may roll over to several files: all that begin with its path without ".log". Adds nothing for a
    /// path of fewer than five characters.
    void addLog(const std::wstring& path);

    /// Sends the report if the user has agreed to it in the error prompt, and waits for the upload. Meanwhile another
    /// installer may start. Returns the report's tracking id; empty without one.
    [[nodiscard]] std::string submit();

  private:
    Run& run;
    ReportFiles files;
    std::vector<std::wstring> stems;
};

}  // namespace pdx
