#include "platform/Wmi.h"

#include <objbase.h>

#include <wbemidl.h>

#include "platform/ComPtr.h"
#include "platform/Text.h"

namespace pdx {
namespace {

class Variant {
  public:
    Variant() noexcept { VariantInit(&value); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    ~Variant() { VariantClear(&value); }

    VARIANT* get() noexcept { return &value; }
    const VARIANT* operator->() const noexcept { return &value; }

  private:
    VARIANT value;
};

WmiValue readProperty(IWbemClassObject& row, const wchar_t* name) {
    Variant property;
    if (FAILED(row.Get(name, 0, property.get(), nullptr, nullptr))) return {};
    switch (property->vt) {
        case VT_NULL:
            return {WmiValue::Kind::null, {}, 0};
        case VT_BSTR:
            return {WmiValue::Kind::text, textOrEmpty(property->bstrVal), 0};
        // WMI returns every integer of up to 32 bits in one of these types.
        case VT_I4:
            return {WmiValue::Kind::number, {}, property->lVal};
        case VT_I2:
            return {WmiValue::Kind::number, {}, property->iVal};
        case VT_UI1:
            return {WmiValue::Kind::number, {}, property->bVal};
        default:
            return {};
    }
}

class ConnectedServices : public WmiServices {
  public:
    explicit ConnectedServices(ComPtr<IWbemServices> connected) : services(std::move(connected)) {}
    HRESULT forEachRow(const std::wstring& query, const std::function<bool(const WmiRow& row)>& function) override {
        const Bstr language(L"WQL");
        const Bstr text(query);
        ComPtr<IEnumWbemClassObject> rows;
        const HRESULT started = services->ExecQuery(
            language.get(), text.get(), WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY, nullptr, rows.put());
        if (FAILED(started)) return started;
        for (;;) {
            ComPtr<IWbemClassObject> row;
            ULONG count = 0;
            if (FAILED(rows->Next(static_cast<LONG>(WBEM_INFINITE), 1, row.put(), &count)) || count == 0)
                return started;
            if (!function([&](const wchar_t* name) { return readProperty(*row.get(), name); })) return started;
        }
    }

  private:
    ComPtr<IWbemServices> services;
};

}  // namespace

WmiConnection connectWmi(const std::wstring& nameSpace) {
    WmiConnection connection;
    ComPtr<IWbemLocator> locator;
    connection.result = CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_ALL, IID_IWbemLocator, locator.putVoid());
    if (FAILED(connection.result)) return connection;

    ComPtr<IWbemServices> services;
    connection.lastStep = WmiConnection::Step::connect;
    connection.result =
        locator->ConnectServer(Bstr(nameSpace).get(), nullptr, nullptr, nullptr, 0, nullptr, nullptr, services.put());
    if (FAILED(connection.result)) return connection;

    connection.lastStep = WmiConnection::Step::setProxy;
    connection.result = CoSetProxyBlanket(services.get(), RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr,
                                          RPC_C_AUTHN_LEVEL_CALL, RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
    if (SUCCEEDED(connection.result)) connection.services = std::make_shared<ConnectedServices>(std::move(services));
    return connection;
}

}  // namespace pdx
