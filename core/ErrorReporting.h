// The error report of a run: the files that it takes along, the user's consent, and the upload.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/RunHooks.h"
#include "core/RunVariables.h"
#include "reporting/ReportPackage.h"

namespace pdx {

/// On the engine's thread.
class ErrorReporting {
  public:
    ErrorReporting(const RunVariables& runVariables, const RunHooks& runHooks)
        : variables(runVariables), hooks(runHooks) {}

    void addFile(const std::wstring& path) { files.insert(path); }
    /// A log that may roll over to several files: all that begin with its path without ".log". Nothing for a path of
    /// fewer than five characters.
    void addLog(const std::wstring& path);

    /// Sends the report, if the user has agreed to it in the error prompt, and waits for that. Before the upload, which
    /// takes as long as the network does, beforeUpload is called. The report's tracking id; empty if there is none.
    [[nodiscard]] std::string submit(const std::function<void()>& beforeUpload);

  private:
    const RunVariables& variables;
    const RunHooks& hooks;
    ReportFiles files;
    std::vector<std::wstring> stems;
};

}  // namespace pdx
