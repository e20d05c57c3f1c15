// What becomes of an error, from its callback to the report of the run: the status, the event, the prompt, the files
// that the report takes along, the user's consent, the upload.
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

/// On the engine's thread. The run outlives the object.
class ErrorReporting {
  public:
    explicit ErrorReporting(Run& reportedRun) : run(reportedRun) {}

    /// Logs an error, takes it into the run's status, sends its event and shows it. The prompt's answer.
    int report(const EngineError& error);
    /// The same for an error of the library's own. The result with which a start fails for it.
    HRESULT fail(ProgramError code);
    /// Shows the status of a failed run, unless an error was shown before.
    void showFailure();

    void addFile(const std::wstring& path) { files.insert(path); }
    /// A log that may roll over to several files: all that begin with its path without ".log". Nothing for a path of
    /// fewer than five characters.
    void addLog(const std::wstring& path);

    /// Sends the report, if the user has agreed to it in the error prompt, and waits for that. Meanwhile another
    /// installer may begin. The report's tracking id; empty if there is none.
    [[nodiscard]] std::string submit();

  private:
    Run& run;
    ReportFiles files;
    std::vector<std::wstring> stems;
};

}  // namespace pdx
