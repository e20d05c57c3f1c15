#include "core/Run.h"

#include "platform/Errors.h"
#include "platform/Log.h"

namespace pdx {

Run::Run(IBootstrapperEngine* runEngine, const BOOTSTRAPPER_COMMAND& command, RunHooks runHooks, RunContext& runContext,
         std::function<bool()> runIsCancelled)
    : engine(runEngine),
      hooks(std::move(runHooks)),
      context(runContext),
      isCancelled(std::move(runIsCancelled)),
      action(command.action),
      variables(runEngine),
      telemetry(variables, context, action) {}

void Run::quit(DWORD code) {
    quitRequested = true;
    engine->Quit(code);
}

void Run::quitOnFailure(const char* operation, HRESULT hr) {
    if (SUCCEEDED(hr)) return;
    PDX_LOG(logError, "BootstrapperApplication::quitOnFailure", "%s failed: %s", operation, describeError(hr));
    context.updateStatus(hr);
    quit(1);
}

void Run::requestReload(ReloadPurpose purpose) {
    const wchar_t* const mode = purpose == ReloadPurpose::repair ? variable::repair : variable::meridianMode;
    shutdownResult = resultReloadBootstrapper;
    SetEnvironmentVariableW(mode, L"1");
    variables.setNumber(mode, 1);
    quit(0);
}

HRESULT Run::detect() {
    const HRESULT hr = engine->Detect(ui->window());
    quitOnFailure("Detect", hr);
    return hr;
}

bool Run::isCancelledAfterQuestions() {
    // The user interface handles this only after the answer to an open question.
    ui->settle();
    return isCancelled();
}

}  // namespace pdx
