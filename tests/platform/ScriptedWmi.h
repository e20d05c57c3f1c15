// A management service that answers as a test says, in the place of the system's.
#pragma once

#include <gtest/gtest.h>
#include <objbase.h>
#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <wbemidl.h>

#include "platform/rules/WmiValue.h"

namespace pdx {

struct IgnoreCase {
    bool operator()(const std::wstring& left, const std::wstring& right) const {
        return _wcsicmp(left.c_str(), right.c_str()) < 0;
    }
};
using ScriptedRow = std::map<std::wstring, WmiValue, IgnoreCase>;

inline WmiValue wmiText(std::wstring text) { return {WmiValue::Kind::text, std::move(text), 0}; }
inline WmiValue wmiNumber(int32_t number) { return {WmiValue::Kind::number, {}, number}; }
inline WmiValue wmiNull() { return {WmiValue::Kind::null, {}, 0}; }

struct ScriptedNamespace {
    HRESULT connected = S_OK;
    HRESULT proxySet = S_OK;
    /// By query; an unknown one fails.
    std::map<std::wstring, std::vector<ScriptedRow>> answers;
};

struct WmiScript {
    HRESULT locatorCreated = S_OK;
    std::map<std::wstring, ScriptedNamespace> namespaces;  ///< an unknown one cannot be connected to
    std::vector<std::wstring> asked;                       ///< "namespace: query"
    int living = 0;                                        ///< objects that nobody has given back
};

// The objects behind the script; what nobody here asks for is not there.
namespace scripted_wmi {

/// An object with one reference, as the service hands them out.
template <typename Type, typename... Arguments>
Type* make(Arguments&&... arguments) {
    return new Type(std::forward<Arguments>(arguments)...);
}

template <typename... Interfaces>
class Object : public Interfaces... {
  public:
    explicit Object(WmiScript& owner) : script(owner) { ++script.living; }
    virtual ~Object() { --script.living; }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        *object = nullptr;
        if (id == IID_IUnknown) *object = static_cast<IUnknown*>(first());
        ((id == __uuidof(Interfaces) ? void(*object = static_cast<Interfaces*>(this)) : void()), ...);
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references;
        if (left == 0) delete this;
        return left;
    }

  protected:
    WmiScript& script;

  private:
    auto* first() { return std::get<0>(std::tuple<Interfaces*...>(static_cast<Interfaces*>(this)...)); }
    ULONG references = 1;
};

class Row : public Object<IWbemClassObject> {
  public:
    Row(WmiScript& owner, ScriptedRow content) : Object(owner), properties(std::move(content)) {}
    HRESULT STDMETHODCALLTYPE Get(LPCWSTR name, LONG, VARIANT* value, CIMTYPE*, LONG*) override {
        const auto found = properties.find(name);
        if (found == properties.end()) return static_cast<HRESULT>(WBEM_E_NOT_FOUND);
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
    // clang-format off
    HRESULT STDMETHODCALLTYPE GetQualifierSet(IWbemQualifierSet**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Put(LPCWSTR, LONG, VARIANT*, CIMTYPE) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Delete(LPCWSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetNames(LPCWSTR, LONG, VARIANT*, SAFEARRAY**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE BeginEnumeration(LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Next(LONG, BSTR*, VARIANT*, CIMTYPE*, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EndEnumeration() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetPropertyQualifierSet(LPCWSTR, IWbemQualifierSet**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IWbemClassObject**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetObjectText(LONG, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SpawnDerivedClass(LONG, IWbemClassObject**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SpawnInstance(LONG, IWbemClassObject**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CompareTo(LONG, IWbemClassObject*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetPropertyOrigin(LPCWSTR, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE InheritsFrom(LPCWSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMethod(LPCWSTR, LONG, IWbemClassObject**, IWbemClassObject**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PutMethod(LPCWSTR, LONG, IWbemClassObject*, IWbemClassObject*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DeleteMethod(LPCWSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE BeginMethodEnumeration(LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE NextMethod(LONG, BSTR*, IWbemClassObject**, IWbemClassObject**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EndMethodEnumeration() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMethodQualifierSet(LPCWSTR, IWbemQualifierSet**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMethodOrigin(LPCWSTR, BSTR*) override { return E_NOTIMPL; }
    // clang-format on

  private:
    ScriptedRow properties;
};

class Rows : public Object<IEnumWbemClassObject> {
  public:
    Rows(WmiScript& owner, std::vector<ScriptedRow> content) : Object(owner), rows(std::move(content)) {}
    HRESULT STDMETHODCALLTYPE Next(LONG, ULONG, IWbemClassObject** row, ULONG* count) override {
        *count = given < rows.size() ? 1 : 0;
        if (*count == 0) return WBEM_S_FALSE;
        *row = make<Row>(script, rows[given++]);
        return WBEM_S_NO_ERROR;
    }
    // clang-format off
    HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE NextAsync(ULONG, IWbemObjectSink*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IEnumWbemClassObject**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Skip(LONG, ULONG) override { return E_NOTIMPL; }
    // clang-format on

  private:
    std::vector<ScriptedRow> rows;
    size_t given = 0;
};

class Services : public Object<IWbemServices, IClientSecurity> {
  public:
    Services(WmiScript& owner, std::wstring nameSpace) : Object(owner), name(std::move(nameSpace)) {}
    HRESULT STDMETHODCALLTYPE ExecQuery(const BSTR language, const BSTR query, LONG flags, IWbemContext*,
                                        IEnumWbemClassObject** rows) override {
        EXPECT_STREQ(language, L"WQL");
        EXPECT_EQ(flags, WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY);
        script.asked.push_back(name + L": " + query);
        const auto& answers = script.namespaces.at(name).answers;
        const auto found = answers.find(query);
        if (found == answers.end()) return static_cast<HRESULT>(WBEM_E_INVALID_QUERY);
        *rows = make<Rows>(script, found->second);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetBlanket(IUnknown*, DWORD service, DWORD authorization, OLECHAR*, DWORD level,
                                         DWORD impersonation, void*, DWORD) override {
        EXPECT_EQ(service, static_cast<DWORD>(RPC_C_AUTHN_WINNT));
        EXPECT_EQ(authorization, static_cast<DWORD>(RPC_C_AUTHZ_NONE));
        EXPECT_EQ(level, static_cast<DWORD>(RPC_C_AUTHN_LEVEL_CALL));
        EXPECT_EQ(impersonation, static_cast<DWORD>(RPC_C_IMP_LEVEL_IMPERSONATE));
        return script.namespaces.at(name).proxySet;
    }
    // clang-format off
    HRESULT STDMETHODCALLTYPE QueryBlanket(IUnknown*, DWORD*, DWORD*, OLECHAR**, DWORD*, DWORD*, void**, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CopyProxy(IUnknown*, IUnknown**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OpenNamespace(const BSTR, LONG, IWbemContext*, IWbemServices**, IWbemCallResult**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CancelAsyncCall(IWbemObjectSink*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryObjectSink(LONG, IWbemObjectSink**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetObject(const BSTR, LONG, IWbemContext*, IWbemClassObject**, IWbemCallResult**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetObjectAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PutClass(IWbemClassObject*, LONG, IWbemContext*, IWbemCallResult**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PutClassAsync(IWbemClassObject*, LONG, IWbemContext*, IWbemObjectSink*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DeleteClass(const BSTR, LONG, IWbemContext*, IWbemCallResult**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DeleteClassAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateClassEnum(const BSTR, LONG, IWbemContext*, IEnumWbemClassObject**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateClassEnumAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PutInstance(IWbemClassObject*, LONG, IWbemContext*, IWbemCallResult**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PutInstanceAsync(IWbemClassObject*, LONG, IWbemContext*, IWbemObjectSink*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DeleteInstance(const BSTR, LONG, IWbemContext*, IWbemCallResult**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DeleteInstanceAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateInstanceEnum(const BSTR, LONG, IWbemContext*, IEnumWbemClassObject**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateInstanceEnumAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ExecQueryAsync(const BSTR, const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ExecNotificationQuery(const BSTR, const BSTR, LONG, IWbemContext*, IEnumWbemClassObject**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ExecNotificationQueryAsync(const BSTR, const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ExecMethod(const BSTR, const BSTR, LONG, IWbemContext*, IWbemClassObject*, IWbemClassObject**, IWbemCallResult**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ExecMethodAsync(const BSTR, const BSTR, LONG, IWbemContext*, IWbemClassObject*, IWbemObjectSink*) override { return E_NOTIMPL; }
    // clang-format on

  private:
    std::wstring name;
};

class Locator : public Object<IWbemLocator> {
  public:
    using Object::Object;
    HRESULT STDMETHODCALLTYPE ConnectServer(const BSTR nameSpace, const BSTR, const BSTR, const BSTR, LONG, const BSTR,
                                            IWbemContext*, IWbemServices** services) override {
        const auto found = script.namespaces.find(nameSpace);
        if (found == script.namespaces.end()) return static_cast<HRESULT>(WBEM_E_INVALID_NAMESPACE);
        if (FAILED(found->second.connected)) return found->second.connected;
        *services = make<Services>(script, nameSpace);
        return S_OK;
    }
};

class Factory : public Object<IClassFactory> {
  public:
    using Object::Object;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
        *object = nullptr;
        if (FAILED(script.locatorCreated)) return script.locatorCreated;
        auto* locator = make<Locator>(script);
        const HRESULT result = locator->QueryInterface(id, object);
        locator->Release();
        return result;
    }
    // clang-format off
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return E_NOTIMPL; }
    // clang-format on
};

}  // namespace scripted_wmi

/// Takes the system's place for this thread, which has an apartment of its own, while it lives; expects at its end that
/// every object was given back.
class ScriptedWmi {
  public:
    ScriptedWmi() {
        auto* factory = scripted_wmi::make<scripted_wmi::Factory>(script);
        EXPECT_EQ(CoRegisterClassObject(CLSID_WbemLocator, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie),
                  S_OK);
        factory->Release();
    }
    ScriptedWmi(const ScriptedWmi&) = delete;
    ScriptedWmi& operator=(const ScriptedWmi&) = delete;
    ~ScriptedWmi() {
        CoRevokeClassObject(cookie);
        EXPECT_EQ(script.living, 0);
    }
    WmiScript* operator->() { return &script; }
    ScriptedNamespace& operator[](const wchar_t* nameSpace) { return script.namespaces[nameSpace]; }

  private:
    WmiScript script;
    DWORD cookie = 0;
};

}  // namespace pdx
