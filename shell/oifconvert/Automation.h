#pragma once
// Late-bound calls on an automation object by member name, as a script makes them: the names
// are looked up with GetIDsOfNames and called through Invoke, so no type library is needed.
// Every failed call throws an AutomationError that names the member.

// windows.h first: the other Windows headers build on it.
#include <windows.h>

#include <oleauto.h>

#include <string>

struct AutomationError {
    std::wstring member;  // "WizIns.cmdNext.Enabled"
    std::wstring reason;
    HRESULT code;
};

// An owned IDispatch with the dotted path it was reached by, for the messages.
class Dispatch {
public:
    Dispatch(IDispatch* object, std::wstring path) : object_(object), path_(std::move(path)) {}
    ~Dispatch();
    Dispatch(Dispatch&& other) noexcept;
    Dispatch(const Dispatch&) = delete;
    Dispatch& operator=(const Dispatch&) = delete;
    Dispatch& operator=(Dispatch&&) = delete;

    // The object a property holds: `WizIns`, or a control of the wizard.
    Dispatch Object(const wchar_t* name) const;
    bool GetBool(const wchar_t* name) const;
    std::wstring GetText(const wchar_t* name) const;
    void PutBool(const wchar_t* name, bool value) const;
    // A null name puts the default property, as `control = "text"` does.
    void PutText(const wchar_t* name, const std::wstring& value) const;
    void Call(const wchar_t* name) const;
    void Call(const wchar_t* name, const std::wstring& argument) const;

private:
    DISPID Id(const wchar_t* name) const;
    VARIANT Invoke(const wchar_t* name, WORD flags, VARIANT* arguments, UINT count) const;
    std::wstring Path(const wchar_t* name) const;

    IDispatch* object_;
    std::wstring path_;
};

// Creates the object of a registered class name on its local server. A class name the
// registry does not know throws with code REGDB_E_CLASSNOTREG.
Dispatch CreateObject(const wchar_t* className);

// The system's text for an error code, with the code in hexadecimal.
std::wstring ErrorText(HRESULT code);
