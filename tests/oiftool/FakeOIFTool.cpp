// A stand-in for OIFTool under Wine: an out-of-process automation server of the class
// "OIFTool.OIFToolLoader" with the wizard members the editor's bridge uses. It appends every
// property write, every read the bridge decides by and every method call to calls.log beside
// itself, one line each; a line equal to the one before is not repeated, so a poll leaves one
// line per value it saw. A file "fail" beside it makes the run fail with a log, a file "hang"
// keeps the wizard busy for ever; otherwise the run copies the source to the target.
// Started by COM (with -Embedding) it serves the class; started as OIFTool's program it only
// holds a hidden window until that is closed. starts.log notes each start and close.

// windows.h first: the other Windows headers build on it.
#include <windows.h>

#include <oleauto.h>

#include <string>

namespace {

// {6F1D2C3A-8B4E-4F5A-9C7D-2E3F4A5B6C7D}, as in TestPrefix.reg.
const CLSID LoaderClass = {0x6f1d2c3a, 0x8b4e, 0x4f5a, {0x9c, 0x7d, 0x2e, 0x3f, 0x4a, 0x5b, 0x6c, 0x7d}};

// The members by DISPID: those of the loader and the wizard, the wizard's controls (options, then
// text boxes, then the rest), and the controls' properties. An object's kind is its member.
// clang-format off
enum Member : DISPID {
    Loader, WizIns, ShowWizard, GotoNextSlide, LoadPlugin, Hide, LastSuccess,
    optConverttoOIF, optConverttoO, optOFileAttached, txtExpO, txtExpOIF, txtImpOIF, txtImpO, cmdNext, txtExpProgress,
    value, Enabled, text, Count
};
const wchar_t* const Names[Count] = {
    L"", L"WizIns", L"ShowWizard", L"GotoNextSlide", L"LoadPlugin", L"Hide", L"LastSuccess",
    L"optConverttoOIF", L"optConverttoO", L"optOFileAttached", L"txtExpO", L"txtExpOIF", L"txtImpOIF", L"txtImpO",
    L"cmdNext", L"txtExpProgress", L"value", L"Enabled", L"text"};
// clang-format on

std::wstring folder;  // of this program, with a backslash
long liveObjects = 0, locks = 0;
bool served = false;

struct Wizard {
    bool toOIF = false, toO = false, busy = false, enabled = true, success = false, hang = false, fail = false;
    int slides = 0, busyReads = 0;
    std::wstring plugin, paths[Count], progress;
} wizard;

void Log(const std::wstring& file, const std::wstring& line) {
    static std::wstring last;
    if (file == L"calls.log" && line == last) return;
    if (file == L"calls.log") last = line;
    const std::wstring text = line + L"\r\n";
    char bytes[2048];
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), int(text.size()), bytes, sizeof bytes, 0, 0);
    HANDLE out = CreateFileW((folder + file).c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                             OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    WriteFile(out, bytes, DWORD(size), &written, nullptr);
    CloseHandle(out);
}

bool Beside(const wchar_t* name) { return GetFileAttributesW((folder + name).c_str()) != INVALID_FILE_ATTRIBUTES; }
void QuitWhenUnused() {
    if (liveObjects == 0 && locks == 0 && served) PostQuitMessage(0);
}

// The conversion itself, once the Next button has been read as grey twice.
void EndRun() {
    wizard.busy = false;
    wizard.enabled = true;
    const std::wstring& source = wizard.paths[wizard.toOIF ? txtExpO : txtImpOIF];
    const std::wstring& target = wizard.paths[wizard.toOIF ? txtExpOIF : txtImpO];
    wizard.success =
        !wizard.fail && wizard.plugin == L"fifastadadp" && CopyFileW(source.c_str(), target.c_str(), FALSE);
    wizard.progress = L"Plugin: " + wizard.plugin + L"\r\nReading " + source + L"\r\n" +
                      (wizard.success ? L"Done." : L"Error: the model has no mesh chunk.\r\nNothing was written.");
}
void StartRun() {
    wizard.busy = true;
    wizard.enabled = false;
    wizard.progress = L"Converting...";
}

std::wstring Text(VARIANT* v) {
    VARIANT copy;
    VariantInit(&copy);
    if (FAILED(VariantChangeType(&copy, v, 0, VT_BSTR))) return L"?";
    std::wstring result = copy.bstrVal ? copy.bstrVal : L"";
    VariantClear(&copy);
    return result;
}
const wchar_t* TrueFalse(bool b) { return b ? L"True" : L"False"; }

class Object : public IDispatch {
public:
    explicit Object(Member kind) : kind_(kind) { ++liveObjects; }
    virtual ~Object() {
        if (kind_ == Loader) Log(L"calls.log", L"release");
        --liveObjects;
        QuitWhenUnused();
    }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
        *out = riid == IID_IUnknown || riid == IID_IDispatch ? this : nullptr;
        if (*out) AddRef();
        return *out ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ULONG(++refs_); }
    ULONG STDMETHODCALLTYPE Release() override {
        const long left = --refs_;
        if (left == 0) delete this;
        return ULONG(left);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
        for (DISPID id = WizIns; id < Count; ++id)
            if (count == 1 && _wcsicmp(names[0], Names[id]) == 0) ids[0] = id;
        return ids[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO*, UINT*) override;

private:
    // "WizIns.cmdNext.Enabled"; a text box's own value is the text box.
    std::wstring Path(DISPID id) const {
        std::wstring self = kind_ == Loader   ? L""
                            : kind_ == WizIns ? L"WizIns"
                                              : L"WizIns." + std::wstring(Names[kind_]);
        if (id == DISPID_VALUE) return self;
        return self.empty() ? Names[id] : self + L"." + Names[id];
    }
    long refs_ = 0;
    Member kind_;
};

HRESULT Give(VARIANT* result, VARTYPE type, IDispatch* object = nullptr, bool b = false, const std::wstring& s = L"") {
    if (!result) return E_INVALIDARG;
    if (object) object->AddRef();
    result->vt = type;
    if (type == VT_DISPATCH) result->pdispVal = object;
    if (type == VT_BOOL) result->boolVal = b ? VARIANT_TRUE : VARIANT_FALSE;
    if (type == VT_BSTR) result->bstrVal = SysAllocString(s.c_str());
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Object::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                         EXCEPINFO*, UINT*) {
    const bool get = flags & DISPATCH_PROPERTYGET, put = flags & DISPATCH_PROPERTYPUT, call = flags & DISPATCH_METHOD;
    VARIANT* argument = params->cArgs > 0 ? &params->rgvarg[0] : nullptr;
    const std::wstring said = argument ? Text(argument) : L"";
    const bool on = said == L"True" || said == L"-1";
    if (kind_ == Loader && id == WizIns && get) return Give(result, VT_DISPATCH, new Object(WizIns));
    if (kind_ == WizIns && id >= optConverttoOIF && id <= txtExpProgress && get)
        return Give(result, VT_DISPATCH, new Object(Member(id)));
    if (call && ((kind_ == Loader && id == ShowWizard) || (kind_ == WizIns && (id == GotoNextSlide || id == Hide)))) {
        Log(L"calls.log", L"call " + Path(id));
        if ((id == ShowWizard && wizard.toO) || (id == GotoNextSlide && ++wizard.slides == 2 && wizard.toOIF))
            StartRun();
        return S_OK;
    }
    if (kind_ == WizIns && id == LoadPlugin && call && argument) {
        Log(L"calls.log", L"call " + Path(id) + L" " + (wizard.plugin = said));
        return S_OK;
    }
    if (kind_ == WizIns && id == LastSuccess && get) {
        Log(L"calls.log", L"get " + Path(id) + L" " + TrueFalse(wizard.success));
        return Give(result, VT_BOOL, nullptr, wizard.success);
    }
    if (kind_ == cmdNext && id == Enabled && (get || put)) {
        if (get && wizard.busy && !wizard.hang && ++wizard.busyReads > 2) EndRun();
        if (put && argument) wizard.enabled = on;
        Log(L"calls.log", (put ? L"put " : L"get ") + Path(id) + L" " + TrueFalse(wizard.enabled));
        return put ? S_OK : Give(result, VT_BOOL, nullptr, wizard.enabled);
    }
    if (kind_ >= optConverttoOIF && kind_ <= optOFileAttached && id == value && put && argument) {
        if (kind_ == optConverttoOIF) wizard.toOIF = on;
        if (kind_ == optConverttoO) wizard.toO = on;
        Log(L"calls.log", L"put " + Path(id) + L" " + TrueFalse(on));
        return S_OK;
    }
    if (kind_ >= txtExpO && kind_ <= txtImpO && id == DISPID_VALUE && put && argument) {
        Log(L"calls.log", L"put " + Path(id) + L" " + (wizard.paths[kind_] = said));
        return S_OK;
    }
    if (kind_ == txtExpProgress && id == text && get && result) {
        Log(L"calls.log", L"get " + Path(id));
        return Give(result, VT_BSTR, nullptr, false, wizard.progress);
    }
    return DISP_E_MEMBERNOTFOUND;
}

class Factory : public IClassFactory {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
        *out = riid == IID_IUnknown || riid == IID_IClassFactory ? this : nullptr;
        return *out ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** out) override {
        if (outer) return CLASS_E_NOAGGREGATION;
        served = true;
        wizard = Wizard{};
        wizard.fail = Beside(L"fail");
        wizard.hang = Beside(L"hang");
        Object* loader = new Object(Loader);
        loader->AddRef();
        const HRESULT hr = loader->QueryInterface(riid, out);
        loader->Release();
        return hr;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        locks += lock ? 1 : -1;
        QuitWhenUnused();
        return S_OK;
    }
} factory;

// A server that nobody asks for ends after a while, so that Wine goes quiet.
void CALLBACK QuitWhenIdle(HWND, UINT, UINT_PTR, DWORD) {
    static int idleSeconds = 0;
    if (liveObjects == 0 && locks == 0 && ++idleSeconds >= 30) PostQuitMessage(0);
}

LRESULT CALLBACK ProgramWindow(HWND window, UINT message, WPARAM w, LPARAM l) {
    if (message != WM_CLOSE) return DefWindowProcW(window, message, w, l);
    Log(L"starts.log", L"closed");
    PostQuitMessage(0);
    return 0;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR arguments, int) {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    folder = path;
    folder.erase(folder.rfind(L'\\') + 1);
    DWORD cookie = 0;
    if (wcsstr(arguments, L"Embedding")) {  // started by COM: serve the class
        Log(L"starts.log", std::wstring(L"start ") + GetCommandLineW());
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        CoRegisterClassObject(LoaderClass, &factory, CLSCTX_LOCAL_SERVER, REGCLS_MULTIPLEUSE, &cookie);
        SetTimer(nullptr, 0, 1000, QuitWhenIdle);
    } else {  // what the bridge's start of OIFTool's program leaves running: a window nobody sees
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = ProgramWindow;
        windowClass.hInstance = instance;
        windowClass.lpszClassName = L"FakeOIFTool";
        RegisterClassW(&windowClass);
        CreateWindowW(L"FakeOIFTool", L"OIFTool", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, 0, 0, instance, nullptr);
        STARTUPINFOW startup;
        GetStartupInfoW(&startup);
        const bool hidden = (startup.dwFlags & STARTF_USESHOWWINDOW) && startup.wShowWindow == SW_HIDE;
        Log(L"starts.log", std::wstring(L"start ") + GetCommandLineW() + (hidden ? L" hidden" : L" shown"));
    }
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    if (cookie) {
        CoRevokeClassObject(cookie);
        CoUninitialize();
    }
    return 0;
}
