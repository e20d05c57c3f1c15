// The service's objects as the tables of functions that they are to C: a slot that nobody asks for stays empty.
#define CINTERFACE
#include "tests/platform/ScriptedWmi.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include <wbemidl.h>

namespace pdx {
namespace {

/// With one reference, as the service hands its objects out.
template <typename Derived, typename Interface, typename Table, const IID& id>
struct Object : Interface {
    explicit Object(WmiScript& owner) : script(owner) {
        table.QueryInterface = queryInterface;
        table.AddRef = addRef;
        table.Release = release;
        this->lpVtbl = &table;
        ++script.living;
    }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    ~Object() { --script.living; }

    static Derived& of(Interface* self) { return *static_cast<Derived*>(self); }
    static HRESULT STDMETHODCALLTYPE queryInterface(Interface* self, REFIID wanted, void** object) {
        *object = wanted == id || wanted == IID_IUnknown ? self : nullptr;
        if (!*object) return E_NOINTERFACE;
        addRef(self);
        return S_OK;
    }
    static ULONG STDMETHODCALLTYPE addRef(Interface* self) { return ++of(self).references; }
    static ULONG STDMETHODCALLTYPE release(Interface* self) {
        const ULONG left = --of(self).references;
        if (left == 0) delete &of(self);
        return left;
    }

    WmiScript& script;
    Table table{};
    ULONG references = 1;
};

struct Row : Object<Row, IWbemClassObject, IWbemClassObjectVtbl, IID_IWbemClassObject> {
    Row(WmiScript& owner, ScriptedRow content) : Object(owner), properties(std::move(content)) { table.Get = get; }
    static HRESULT STDMETHODCALLTYPE get(IWbemClassObject* self, LPCWSTR name, LONG, VARIANT* value, CIMTYPE*, LONG*) {
        const auto found = of(self).properties.find(name);
        if (found == of(self).properties.end()) return static_cast<HRESULT>(WBEM_E_NOT_FOUND);
        switch (found->second.kind) {
            case WmiValue::Kind::text:
                value->vt = VT_BSTR;
                value->bstrVal = SysAllocString(found->second.text.c_str());
                break;
            case WmiValue::Kind::number:
                value->vt = VT_I4;
                value->lVal = found->second.number;
                break;
            case WmiValue::Kind::null:
                value->vt = VT_NULL;
                break;
            case WmiValue::Kind::other:
                value->vt = VT_BOOL;
                value->boolVal = VARIANT_TRUE;
                break;
        }
        return S_OK;
    }
    ScriptedRow properties;
};

struct Rows : Object<Rows, IEnumWbemClassObject, IEnumWbemClassObjectVtbl, IID_IEnumWbemClassObject> {
    Rows(WmiScript& owner, std::vector<ScriptedRow> content) : Object(owner), rows(std::move(content)) {
        table.Next = next;
    }
    static HRESULT STDMETHODCALLTYPE next(IEnumWbemClassObject* self, LONG, ULONG, IWbemClassObject** row,
                                          ULONG* count) {
        Rows& all = of(self);
        *count = all.given < all.rows.size() ? 1 : 0;
        if (*count == 0) return WBEM_S_FALSE;
        *row = new Row(all.script, all.rows[all.given++]);
        return WBEM_S_NO_ERROR;
    }
    std::vector<ScriptedRow> rows;
    size_t given = 0;
};

/// What the proxy of a connection is told of its security.
struct Security : Object<Security, IClientSecurity, IClientSecurityVtbl, IID_IClientSecurity> {
    Security(WmiScript& owner, HRESULT answer) : Object(owner), result(answer) { table.SetBlanket = setBlanket; }
    static HRESULT STDMETHODCALLTYPE setBlanket(IClientSecurity* self, IUnknown*, DWORD service, DWORD authorization,
                                                OLECHAR*, DWORD level, DWORD impersonation, void*, DWORD) {
        EXPECT_EQ(service, static_cast<DWORD>(RPC_C_AUTHN_WINNT));
        EXPECT_EQ(authorization, static_cast<DWORD>(RPC_C_AUTHZ_NONE));
        EXPECT_EQ(level, static_cast<DWORD>(RPC_C_AUTHN_LEVEL_CALL));
        EXPECT_EQ(impersonation, static_cast<DWORD>(RPC_C_IMP_LEVEL_IMPERSONATE));
        return of(self).result;
    }
    HRESULT result;
};

struct Services : Object<Services, IWbemServices, IWbemServicesVtbl, IID_IWbemServices> {
    Services(WmiScript& owner, std::wstring nameSpace) : Object(owner), name(std::move(nameSpace)) {
        table.QueryInterface = querySecurityToo;
        table.ExecQuery = execQuery;
    }
    static HRESULT STDMETHODCALLTYPE querySecurityToo(IWbemServices* self, REFIID wanted, void** object) {
        if (wanted != IID_IClientSecurity) return queryInterface(self, wanted, object);
        *object = new Security(of(self).script, of(self).space().proxySet);
        return S_OK;
    }
    static HRESULT STDMETHODCALLTYPE execQuery(IWbemServices* self, const BSTR language, const BSTR query, LONG flags,
                                               IWbemContext*, IEnumWbemClassObject** rows) {
        EXPECT_STREQ(language, L"WQL");
        EXPECT_EQ(flags, WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY);
        Services& services = of(self);
        services.script.asked.push_back(services.name + L": " + query);
        const auto found = services.space().answers.find(query);
        if (found == services.space().answers.end()) return static_cast<HRESULT>(WBEM_E_INVALID_QUERY);
        *rows = new Rows(services.script, found->second);
        return S_OK;
    }
    [[nodiscard]] const ScriptedNamespace& space() const { return script.namespaces.at(name); }
    std::wstring name;
};

struct Locator : Object<Locator, IWbemLocator, IWbemLocatorVtbl, IID_IWbemLocator> {
    explicit Locator(WmiScript& owner) : Object(owner) { table.ConnectServer = connectServer; }
    static HRESULT STDMETHODCALLTYPE connectServer(IWbemLocator* self, const BSTR nameSpace, const BSTR, const BSTR,
                                                   const BSTR, LONG, const BSTR, IWbemContext*,
                                                   IWbemServices** services) {
        const auto& namespaces = of(self).script.namespaces;
        const auto found = namespaces.find(nameSpace);
        if (found == namespaces.end()) return static_cast<HRESULT>(WBEM_E_INVALID_NAMESPACE);
        if (FAILED(found->second.connected)) return found->second.connected;
        *services = new Services(of(self).script, nameSpace);
        return S_OK;
    }
};

struct Factory : Object<Factory, IClassFactory, IClassFactoryVtbl, IID_IClassFactory> {
    explicit Factory(WmiScript& owner) : Object(owner) { table.CreateInstance = createInstance; }
    static HRESULT STDMETHODCALLTYPE createInstance(IClassFactory* self, IUnknown*, REFIID wanted, void** object) {
        *object = nullptr;
        if (FAILED(of(self).script.locatorCreated)) return of(self).script.locatorCreated;
        auto* locator = new Locator(of(self).script);
        const HRESULT result = Locator::queryInterface(locator, wanted, object);
        Locator::release(locator);
        return result;
    }
};

}  // namespace

ScriptedWmi::ScriptedWmi() {
    auto* factory = new Factory(script);
    EXPECT_EQ(CoRegisterClassObject(CLSID_WbemLocator, reinterpret_cast<IUnknown*>(factory), CLSCTX_INPROC_SERVER,
                                    REGCLS_MULTIPLEUSE, &cookie),
              S_OK);
    Factory::release(factory);
}

ScriptedWmi::~ScriptedWmi() {
    CoRevokeClassObject(cookie);
    EXPECT_EQ(script.living, 0);
}

}  // namespace pdx
