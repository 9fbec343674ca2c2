#include "Automation.h"

#include <utility>
#include <vector>

namespace {

// A VARIANT that clears itself.
struct Variant {
    VARIANT v;
    Variant() { VariantInit(&v); }
    ~Variant() { VariantClear(&v); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
};

// A text argument; the VARIANT owns its copy and frees it when cleared.
void SetText(Variant& argument, const std::wstring& text) {
    argument.v.vt = VT_BSTR;
    argument.v.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

std::wstring Trimmed(std::wstring text) {
    while (!text.empty() && (text.back() == L'\r' || text.back() == L'\n' || text.back() == L' ')) text.pop_back();
    return text;
}

std::wstring ExceptionText(EXCEPINFO& info) {
    if (info.pfnDeferredFillIn) info.pfnDeferredFillIn(&info);
    std::wstring text = info.bstrDescription ? info.bstrDescription : L"";
    if (text.empty() && info.bstrSource) text = info.bstrSource;
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
    return text;
}

}  // namespace

std::wstring ErrorText(HRESULT code) {
    wchar_t* buffer = nullptr;
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                       nullptr, static_cast<DWORD>(code), 0, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    std::wstring text = length && buffer ? Trimmed(buffer) : L"";
    LocalFree(buffer);
    wchar_t hex[16];
    swprintf(hex, 16, L"0x%08lX", static_cast<unsigned long>(code));
    return text.empty() ? std::wstring(L"error ") + hex : text + L" (" + hex + L")";
}

Dispatch::~Dispatch() {
    if (object_) object_->Release();
}

Dispatch::Dispatch(Dispatch&& other) noexcept
    : object_(std::exchange(other.object_, nullptr)), path_(std::move(other.path_)) {}

std::wstring Dispatch::Path(const wchar_t* name) const {
    if (!name) return path_;
    return path_.empty() ? name : path_ + L"." + name;
}

DISPID Dispatch::Id(const wchar_t* name) const {
    if (!name) return DISPID_VALUE;
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    DISPID id = DISPID_UNKNOWN;
    const HRESULT hr = object_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(hr)) throw AutomationError{Path(name), L"the member is unknown: " + ErrorText(hr), hr};
    return id;
}

VARIANT Dispatch::Invoke(const wchar_t* name, WORD flags, VARIANT* arguments, UINT count) const {
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{arguments, nullptr, count, 0};
    if (flags == DISPATCH_PROPERTYPUT) {
        params.rgdispidNamedArgs = &put;
        params.cNamedArgs = 1;
    }
    VARIANT result;
    VariantInit(&result);
    EXCEPINFO info{};
    UINT badArgument = 0;
    const HRESULT hr =
        object_->Invoke(Id(name), IID_NULL, LOCALE_USER_DEFAULT, flags, &params, &result, &info, &badArgument);
    if (hr == DISP_E_EXCEPTION) throw AutomationError{Path(name), ExceptionText(info), hr};
    if (FAILED(hr)) throw AutomationError{Path(name), ErrorText(hr), hr};
    return result;
}

Dispatch Dispatch::Object(const wchar_t* name) const {
    Variant result;
    result.v = Invoke(name, DISPATCH_PROPERTYGET, nullptr, 0);
    IDispatch* object = nullptr;
    if (result.v.vt == VT_DISPATCH && result.v.pdispVal)
        result.v.pdispVal->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&object));
    if (!object) throw AutomationError{Path(name), L"the member holds no object", DISP_E_TYPEMISMATCH};
    return Dispatch(object, Path(name));
}

bool Dispatch::GetBool(const wchar_t* name) const {
    Variant result;
    result.v = Invoke(name, DISPATCH_PROPERTYGET, nullptr, 0);
    const HRESULT hr = VariantChangeType(&result.v, &result.v, 0, VT_BOOL);
    if (FAILED(hr)) throw AutomationError{Path(name), L"not a true or false value: " + ErrorText(hr), hr};
    return result.v.boolVal != VARIANT_FALSE;
}

std::wstring Dispatch::GetText(const wchar_t* name) const {
    Variant result;
    result.v = Invoke(name, DISPATCH_PROPERTYGET, nullptr, 0);
    const HRESULT hr = VariantChangeType(&result.v, &result.v, 0, VT_BSTR);
    if (FAILED(hr)) throw AutomationError{Path(name), L"not a text: " + ErrorText(hr), hr};
    return result.v.bstrVal ? std::wstring(result.v.bstrVal, SysStringLen(result.v.bstrVal)) : std::wstring();
}

void Dispatch::PutBool(const wchar_t* name, bool value) const {
    Variant argument;
    argument.v.vt = VT_BOOL;
    argument.v.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    Variant ignored;
    ignored.v = Invoke(name, DISPATCH_PROPERTYPUT, &argument.v, 1);
}

void Dispatch::PutText(const wchar_t* name, const std::wstring& value) const {
    Variant argument;
    SetText(argument, value);
    Variant ignored;
    ignored.v = Invoke(name, DISPATCH_PROPERTYPUT, &argument.v, 1);
}

void Dispatch::Call(const wchar_t* name) const {
    Variant ignored;
    ignored.v = Invoke(name, DISPATCH_METHOD, nullptr, 0);
}

void Dispatch::Call(const wchar_t* name, const std::wstring& argument) const {
    Variant text;
    SetText(text, argument);
    Variant ignored;
    ignored.v = Invoke(name, DISPATCH_METHOD, &text.v, 1);
}

Dispatch CreateObject(const wchar_t* className) {
    CLSID id;
    HRESULT hr = CLSIDFromProgID(className, &id);
    if (FAILED(hr)) throw AutomationError{className, ErrorText(hr), REGDB_E_CLASSNOTREG};
    IDispatch* object = nullptr;
    hr = CoCreateInstance(id, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object));
    if (FAILED(hr)) throw AutomationError{className, L"the server did not give its object: " + ErrorText(hr), hr};
    return Dispatch(object, L"");
}
