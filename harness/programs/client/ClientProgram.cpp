// A program of the sample client. It notes its command line (Launches.h) and ends; with "--stay" it runs on until
// it is ended.
#include "harness/programs/client/Launches.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    if (!client::note(GetCommandLineW())) return 1;
    if (std::wstring(GetCommandLineW()).find(L"--stay") != std::wstring::npos) Sleep(INFINITE);
    return 0;
}
