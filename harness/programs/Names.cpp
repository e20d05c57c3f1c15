// Replaces the system's accessibility service, of which Wine has no more than the class: a name that is published
// for a window becomes that window's native text, which readers of the screen go by, and the watcher with them.
#include <windows.h>

#include <oleacc.h>

namespace {

/// COM's part of an object that lives as long as the library.
template <typename Interface>
class Lasting : public Interface {
  public:
    explicit Lasting(REFIID id) : own(id) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        const bool known = id == IID_IUnknown || id == own;
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

  private:
    const IID own;
};

class Names : public Lasting<IAccPropServices> {
  public:
    Names() : Lasting(IID_IAccPropServices) {}
    HRESULT STDMETHODCALLTYPE SetHwndPropStr(HWND window, DWORD, DWORD, MSAAPROPID property, LPCWSTR text) override {
        if (property != PROPID_ACC_NAME) return E_NOTIMPL;
        // Not by the window's own procedure, for which a text has another meaning.
        return DefWindowProcW(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) ? S_OK : E_FAIL;
    }

    // clang-format off
    HRESULT STDMETHODCALLTYPE SetPropValue(const BYTE*, DWORD, MSAAPROPID, VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetPropServer(const BYTE*, DWORD, const MSAAPROPID*, int, IAccPropServer*, AnnoScope) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ClearProps(const BYTE*, DWORD, const MSAAPROPID*, int) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetHwndProp(HWND, DWORD, DWORD, MSAAPROPID, VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetHwndPropServer(HWND, DWORD, DWORD, const MSAAPROPID*, int, IAccPropServer*, AnnoScope) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ClearHwndProps(HWND, DWORD, DWORD, const MSAAPROPID*, int) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ComposeHwndIdentityString(HWND, DWORD, DWORD, BYTE**, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DecomposeHwndIdentityString(const BYTE*, DWORD, HWND*, DWORD*, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetHmenuProp(HMENU, DWORD, MSAAPROPID, VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetHmenuPropStr(HMENU, DWORD, MSAAPROPID, LPCWSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetHmenuPropServer(HMENU, DWORD, const MSAAPROPID*, int, IAccPropServer*, AnnoScope) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ClearHmenuProps(HMENU, DWORD, const MSAAPROPID*, int) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ComposeHmenuIdentityString(HMENU, DWORD, BYTE**, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DecomposeHmenuIdentityString(const BYTE*, DWORD, HMENU*, DWORD*) override { return E_NOTIMPL; }
    // clang-format on
};

class Factory : public Lasting<IClassFactory> {
  public:
    Factory() : Lasting(IID_IClassFactory) {}
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
        return names.QueryInterface(id, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  private:
    Names names;
};

Factory factory;

}  // namespace

extern "C" HRESULT WINAPI DllGetClassObject(REFCLSID, REFIID id, void** object) {
    return factory.QueryInterface(id, object);
}
