#include "harness/programs/faults/FaultTable.h"

// First of all, for the headers below.
#include <winsock2.h>

#include <aclapi.h>
#include <bcrypt.h>
#include <gdiplus.h>
#include <io.h>
#include <iphlpapi.h>
#include <malloc.h>
#include <objbase.h>
#include <oleauto.h>
#include <process.h>
#include <shellapi.h>
#include <shlobj.h>
#include <tlhelp32.h>
#include <wincrypt.h>
#include <wininet.h>

#include <cstdio>

namespace pdx {

namespace {

template <typename Function>
struct Stack;
template <typename Result, typename... Arguments>
struct Stack<Result(WINAPI*)(Arguments...)> {
    static constexpr uint32_t bytes = (0U + ... + ((sizeof(Arguments) + 3U) & ~3U));
};

constexpr uint32_t invalidHandle = 0xFFFFFFFF;
constexpr uint32_t minusOne = 0xFFFFFFFF;
constexpr uint32_t fail = 0x80004005;
constexpr uint32_t notRegistered = 0x80040154;
constexpr uint32_t noMemory = 0x8007000E;
constexpr uint32_t notFound = 0x80070002;
constexpr uint32_t gdiplusNoMemory = 3;
constexpr uint32_t gdiplusNoFont = 14;
constexpr uint32_t noSuccess = 0xC0000001;
constexpr DWORD slowness = 1500;

#define FAULT(function, ...) \
    { #function, Stack < decltype(&::function)> ::bytes, __VA_ARGS__ }
/// The caller clears the stack.
#define C_RUNTIME(function, ...) \
    { #function, 0, __VA_ARGS__ }
#define GDIPLUS(function, ...) \
    { #function, Stack < decltype(&Gdiplus::DllExports::function)> ::bytes, __VA_ARGS__ }
#define REGISTRY(function, ...) FAULT(function, ERROR_ACCESS_DENIED, ERROR_ACCESS_DENIED __VA_OPT__(, ) __VA_ARGS__)
#define DENIED(function) FAULT(function, 0, ERROR_ACCESS_DENIED)

constexpr PlatformFault faults[] = {
    REGISTRY(RegCreateKeyExW),
    REGISTRY(RegOpenKeyExW, 0, slowness),
    REGISTRY(RegSetValueExW, 0, slowness),
    REGISTRY(RegGetValueW),
    REGISTRY(RegQueryValueExW),
    REGISTRY(RegEnumKeyExW),
    REGISTRY(RegEnumValueW),
    REGISTRY(RegQueryInfoKeyW),
    REGISTRY(RegDeleteKeyExW),
    REGISTRY(RegDeleteTreeW),
    REGISTRY(RegDeleteValueW),
    REGISTRY(GetSecurityInfo),
    DENIED(CryptAcquireContextW),
    DENIED(CryptCreateHash),
    DENIED(CryptHashData),
    DENIED(CryptGetHashParam),
    DENIED(GetTokenInformation),
    DENIED(GetUserNameW),
    DENIED(OpenProcessToken),
    FAULT(OpenSCManagerW, 0, ERROR_ACCESS_DENIED, 0, slowness),
    FAULT(OpenServiceW, 0, ERROR_SERVICE_DOES_NOT_EXIST),
    DENIED(QueryServiceStatus),
    FAULT(ControlService, 0, ERROR_SERVICE_REQUEST_TIMEOUT, 0, slowness),
    DENIED(DeleteService),
    FAULT(CreateCompatibleDC, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAULT(CreateFontIndirectW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAULT(CreateFontW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAULT(GetObjectW, 0, ERROR_INVALID_HANDLE),
    FAULT(GetTextFaceW, 0, ERROR_INVALID_HANDLE),
    FAULT(CopyFileW, 0, ERROR_DISK_FULL, 0, slowness),
    FAULT(CreateEventW, 0, ERROR_NO_SYSTEM_RESOURCES),
    FAULT(CreateFileW, invalidHandle, ERROR_ACCESS_DENIED, 0, slowness),
    FAULT(CreateMutexW, 0, ERROR_ACCESS_DENIED),
    FAULT(OpenMutexW, 0, ERROR_ACCESS_DENIED),
    FAULT(CreateToolhelp32Snapshot, invalidHandle, ERROR_NOT_ENOUGH_MEMORY),
    DENIED(DeviceIoControl),
    DENIED(DuplicateHandle),
    FAULT(FindFirstFileW, invalidHandle, ERROR_ACCESS_DENIED),
    FAULT(FindNextFileW, 0, ERROR_UNRECOGNIZED_VOLUME),
    FAULT(FindResourceW, 0, ERROR_RESOURCE_NAME_NOT_FOUND),
    FAULT(LoadResource, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAULT(FormatMessageW, 0, ERROR_MR_MID_NOT_FOUND),
    FAULT(GetDiskFreeSpaceExW, 0, ERROR_NOT_READY),
    FAULT(GetEnvironmentVariableW, 0, ERROR_ENVVAR_NOT_FOUND),
    DENIED(SetEnvironmentVariableW),
    DENIED(GetFileInformationByHandle),
    DENIED(GetFileInformationByHandleEx),
    DENIED(SetFileInformationByHandle),
    DENIED(GetFinalPathNameByHandleW),
    DENIED(GetFullPathNameW),
    DENIED(GetShortPathNameW),
    DENIED(GetModuleFileNameW),
    FAULT(GetModuleHandleExW, 0, ERROR_MOD_NOT_FOUND),
    DENIED(GetSystemDirectoryW),
    FAULT(GetTempPathW, 0, ERROR_PATH_NOT_FOUND),
    DENIED(GetGeoInfoW),
    DENIED(GetUserDefaultLocaleName),
    DENIED(GetVolumePathNameW),
    DENIED(GetVolumePathNamesForVolumeNameW),
    FAULT(LoadLibraryExW, 0, ERROR_MOD_NOT_FOUND),
    FAULT(LoadLibraryW, 0, ERROR_MOD_NOT_FOUND),
    DENIED(OpenProcess),
    DENIED(Process32FirstW),
    DENIED(ProcessIdToSessionId),
    DENIED(QueryFullProcessImageNameW),
    DENIED(QueryDosDeviceW),
    FAULT(ReadFile, 0, ERROR_READ_FAULT, 0, slowness),
    DENIED(SetCurrentDirectoryW),
    FAULT(MultiByteToWideChar, 0, ERROR_NO_UNICODE_TRANSLATION),
    FAULT(WideCharToMultiByte, 0, ERROR_NO_UNICODE_TRANSLATION),
    C_RUNTIME(malloc, 0, ERROR_NOT_ENOUGH_MEMORY),
    C_RUNTIME(realloc, 0, ERROR_NOT_ENOUGH_MEMORY),
    C_RUNTIME(_beginthreadex, 0, ERROR_NOT_ENOUGH_MEMORY),
    C_RUNTIME(_wfopen, 0, ERROR_ACCESS_DENIED),
    C_RUNTIME(fwrite, 0, ERROR_DISK_FULL),
    C_RUNTIME(fflush, minusOne, ERROR_DISK_FULL),
    C_RUNTIME(_write, minusOne, ERROR_DISK_FULL),
    C_RUNTIME(_read, minusOne, ERROR_READ_FAULT),
    C_RUNTIME(_fdopen, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAULT(CoCreateInstance, notRegistered, 0, 5, slowness),
    FAULT(CoInitializeEx, noMemory, 0),
    FAULT(CoSetProxyBlanket, fail, 0),
    FAULT(CreateStreamOnHGlobal, noMemory, 0, 3),
    FAULT(SysAllocStringLen, 0, 0),
    FAULT(UuidCreate, RPC_S_UUID_NO_ADDRESS, 0),
    FAULT(CommandLineToArgvW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAULT(SHGetKnownFolderPath, notFound, 0, 4, slowness),
    FAULT(SHCreateItemFromParsingName, notFound, 0, 4),
    FAULT(ShellExecuteExW, 0, ERROR_ACCESS_DENIED),
    FAULT(CreateDialogParamW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAULT(BeginDeferWindowPos, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAULT(BeginPaint, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAULT(LoadCursorW, 0, ERROR_RESOURCE_NAME_NOT_FOUND),
    FAULT(SetTimer, 0, ERROR_NOT_ENOUGH_MEMORY),
    DENIED(GetClientRect),
    DENIED(GetWindowRect),
    DENIED(SetWindowPos),
    FAULT(PostMessageW, 0, ERROR_NOT_ENOUGH_QUOTA),
    FAULT(SendNotifyMessageW, 0, ERROR_NOT_ENOUGH_QUOTA),
    FAULT(BCryptOpenAlgorithmProvider, noSuccess, 0, 1),
    FAULT(BCryptCreateHash, noSuccess, 0, 2),
    FAULT(BCryptHashData, noSuccess, 0),
    FAULT(BCryptFinishHash, noSuccess, 0),
    FAULT(CertGetCertificateChain, 0, static_cast<DWORD>(CRYPT_E_REVOCATION_OFFLINE), 8),
    FAULT(CryptQueryObject, 0, static_cast<DWORD>(CRYPT_E_NO_MATCH)),
    FAULT(GetAdaptersInfo, ERROR_NO_DATA, ERROR_NO_DATA),
    FAULT(GetFileVersionInfoSizeW, 0, ERROR_RESOURCE_TYPE_NOT_FOUND),
    FAULT(GetFileVersionInfoW, 0, ERROR_RESOURCE_TYPE_NOT_FOUND),
    FAULT(InternetOpenW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAULT(InternetConnectW, 0, ERROR_INTERNET_NAME_NOT_RESOLVED),
    FAULT(InternetCrackUrlW, 0, ERROR_INTERNET_INVALID_URL),
    FAULT(HttpOpenRequestW, 0, ERROR_INTERNET_INCORRECT_HANDLE_STATE),
    FAULT(HttpSendRequestW, 0, ERROR_INTERNET_TIMEOUT, 0, slowness),
    FAULT(InternetReadFile, 0, ERROR_INTERNET_CONNECTION_RESET, 0, slowness),
    FAULT(InternetQueryDataAvailable, 0, ERROR_INTERNET_CONNECTION_RESET),
    GDIPLUS(GdipCreateBitmapFromStream, gdiplusNoMemory, 0, 2),
    GDIPLUS(GdipCreateBitmapFromScan0, gdiplusNoMemory, 0, 6),
    GDIPLUS(GdipBitmapLockBits, gdiplusNoMemory, 0),
    GDIPLUS(GdipGetImageGraphicsContext, gdiplusNoMemory, 0, 2),
    GDIPLUS(GdipCreateFont, gdiplusNoFont, 0, 5),
    GDIPLUS(GdipCreateFontFamilyFromName, gdiplusNoFont, 0, 3),
    GDIPLUS(GdipNewPrivateFontCollection, gdiplusNoMemory, 0, 1),
    GDIPLUS(GdipPrivateAddMemoryFont, gdiplusNoFont, 0),
    GDIPLUS(GdipGetFontCollectionFamilyList, gdiplusNoFont, 0),
    GDIPLUS(GdipGetGenericFontFamilySansSerif, gdiplusNoFont, 0, 1),
    GDIPLUS(GdipMeasureString, gdiplusNoMemory, 0),
    GDIPLUS(GdipDrawString, gdiplusNoMemory, 0),
    GDIPLUS(GdipCreateFromHDC, gdiplusNoMemory, 0, 2),
    GDIPLUS(GdipCreateFromHWND, gdiplusNoMemory, 0, 2),
    GDIPLUS(GdipCreateSolidFill, gdiplusNoMemory, 0, 2),
    GDIPLUS(GdipCreatePath, gdiplusNoMemory, 0, 2),
    GDIPLUS(GdipCreatePen1, gdiplusNoMemory, 0, 4),
};

}  // namespace

std::span<const PlatformFault> platformFaults() { return faults; }

}  // namespace pdx
