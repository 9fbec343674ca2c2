// terramason-oifconvert: turns a .o model into an .oif file or back by driving OIFTool's
// automation server, for the editor on Linux, which runs it through Wine in the prefix where
// OIFTool is installed.
//
//   terramason-oifconvert.exe [--tool-folder FOLDER] [--timeout-seconds N] --to-oif SOURCE.o TARGET.oif
//   terramason-oifconvert.exe [--tool-folder FOLDER] [--timeout-seconds N] --to-o SOURCE.oif TARGET.o
//   terramason-oifconvert.exe --close
//
// FOLDER is OIFTool's install folder as a Windows path; without the option it is read from
// HKEY_CURRENT_USER\Software\Problems Inc\OIFTool\InstallPath. OIFTool's own log is printed when
// it fails. Each conversion starts OIFTool's program, which stays running with its windows
// hidden; --close sends a close message to the windows of the one the last conversion started.
// Exit codes: 0 converted, 1 OIFTool reported a failure, 2 OIFTool did not finish in time,
// 3 OIFTool could not be reached, 64 a wrong command line.
#include <windows.h>

#include <cwchar>
#include <string>

#include "Automation.h"

namespace {

enum Exit { Converted = 0, ToolFailed = 1, TimedOut = 2, Unreachable = 3, Usage = 64 };

// Where the process id of the last OIFTool started is kept between runs.
const wchar_t* const KeptProcessKey = L"Software\\Terramason";
const wchar_t* const KeptProcessValue = L"OIFToolProcessId";

struct Request {
    bool close = false;
    bool toOIF = true;
    std::wstring source, target, toolFolder;
    bool toolFolderGiven = false;
    DWORD timeoutMs = 10 * 60 * 1000;
};

// Console output when there is a console, else UTF-8 bytes for whoever reads the pipe or file.
void Print(const std::wstring& text) {
    std::wstring line = text;
    if (line.empty() || line.back() != L'\n') line += L"\r\n";
    HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0, written = 0;
    if (GetConsoleMode(out, &mode)) {
        WriteConsoleW(out, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
        return;
    }
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), bytes.data(), size, nullptr, nullptr);
    WriteFile(out, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

bool ParseArguments(int argc, wchar_t** argv, Request& request) {
    bool direction = false;
    for (int i = 1; i < argc; ++i) {
        const std::wstring arg = argv[i];
        const bool hasValue = i + 1 < argc;
        if ((arg == L"--to-oif" || arg == L"--to-o") && i + 2 < argc) {
            request.toOIF = arg == L"--to-oif";
            request.source = argv[++i];
            request.target = argv[++i];
            direction = true;
        } else if (arg == L"--close" && argc == 2) {
            request.close = true;
            return true;
        } else if (arg == L"--tool-folder" && hasValue) {
            request.toolFolder = argv[++i];
            request.toolFolderGiven = true;
        } else if (arg == L"--timeout-seconds" && hasValue) {
            const long seconds = std::wcstol(argv[++i], nullptr, 10);
            if (seconds <= 0) return false;
            request.timeoutMs = static_cast<DWORD>(seconds) * 1000;
        } else {
            return false;
        }
    }
    return direction;
}

std::wstring RegisteredToolFolder() {
    wchar_t value[MAX_PATH] = L"";
    DWORD size = sizeof value;
    if (RegGetValueW(HKEY_CURRENT_USER, L"Software\\Problems Inc\\OIFTool", L"InstallPath", RRF_RT_REG_SZ, nullptr,
                     value, &size) != ERROR_SUCCESS)
        return {};
    return value;
}

// OIFTool's program from its folder, hidden, and not waited for. The server may be registered
// even when this fails, so a failure is only reported.
void ToolStart(const std::wstring& folder) {
    std::wstring program = folder;
    if (program.empty() || program.back() != L'\\') program += L'\\';
    program += L"oiftool.exe";
    std::wstring commandLine = L"\"" + program + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process)) {
        Print(L"Could not start process: " + program);
        return;
    }
    RegSetKeyValueW(HKEY_CURRENT_USER, KeptProcessKey, KeptProcessValue, REG_DWORD, &process.dwProcessId,
                    sizeof process.dwProcessId);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

// Process ids are reused: the kept one counts only while it still is OIFTool's program.
bool IsOIFTool(DWORD processId) {
    HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId);
    if (!process) return false;
    wchar_t image[MAX_PATH];
    DWORD size = MAX_PATH;
    const bool named = QueryFullProcessImageNameW(process, 0, image, &size);
    CloseHandle(process);
    const std::wstring name = named ? image : L"";
    return name.size() >= 12 && _wcsicmp(name.c_str() + name.size() - 12, L"\\oiftool.exe") == 0;
}

BOOL CALLBACK CloseIfOfProcess(HWND window, LPARAM processId) {
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner == static_cast<DWORD>(processId) && !GetParent(window)) PostMessageW(window, WM_CLOSE, 0, 0);
    return TRUE;
}

int CloseTool() {
    DWORD processId = 0, size = sizeof processId;
    if (RegGetValueW(HKEY_CURRENT_USER, KeptProcessKey, KeptProcessValue, RRF_RT_REG_DWORD, nullptr, &processId,
                     &size) == ERROR_SUCCESS &&
        IsOIFTool(processId))
        EnumWindows(CloseIfOfProcess, static_cast<LPARAM>(processId));
    return 0;
}

// The first page of the wizard: the direction, then on to the plug-in.
void ChooseDirection(const Dispatch& wizard, const wchar_t* option) {
    wizard.Object(option).PutBool(L"value", true);
    wizard.Call(L"GotoNextSlide");
    wizard.Call(L"LoadPlugin", L"fifastadadp");
}

void SetPaths(const Dispatch& wizard, const wchar_t* sourceBox, const wchar_t* targetBox, const Request& request) {
    wizard.Object(sourceBox).PutText(nullptr, request.source);
    wizard.Object(targetBox).PutText(nullptr, request.target);
    wizard.Call(L"GotoNextSlide");
}

// Polls the Next button until it is `enabled`; false when the deadline passes first.
bool WaitForNext(const Dispatch& wizard, bool enabled, ULONGLONG deadline) {
    const Dispatch next = wizard.Object(L"cmdNext");
    while (next.GetBool(L"Enabled") != enabled) {
        if (GetTickCount64() >= deadline) return false;
        Sleep(100);
    }
    return true;
}

// The run has ended: the wizard goes away and OIFTool tells how it went.
int Finish(const Dispatch& wizard) {
    wizard.Object(L"cmdNext").PutBool(L"Enabled", false);
    wizard.Call(L"Hide");
    if (wizard.GetBool(L"LastSuccess")) return Converted;
    Print(wizard.Object(L"txtExpProgress").GetText(L"text"));
    return ToolFailed;
}

// Time is up: the wizard is hidden all the same, so that it does not stay on the screen, and what
// OIFTool has logged so far tells how far it got.
int GiveUp(const Dispatch& wizard, const Request& request) {
    Print(L"OIFTool did not finish within " + std::to_wstring(request.timeoutMs / 1000) +
          L" seconds; its wizard was hidden. Its log so far:");
    wizard.Call(L"Hide");
    Print(wizard.Object(L"txtExpProgress").GetText(L"text"));
    return TimedOut;
}

int ConvertToOIF(const Dispatch& wizard, const Request& request) {
    ChooseDirection(wizard, L"optConverttoOIF");
    SetPaths(wizard, L"txtExpO", L"txtExpOIF", request);
    if (!WaitForNext(wizard, true, GetTickCount64() + request.timeoutMs)) return GiveUp(wizard, request);
    return Finish(wizard);
}

// OIFTool asks its own questions in this direction: the wizard is shown, and the run is over
// when its Next button has gone grey and come back.
int ConvertToO(const Dispatch& loader, const Dispatch& wizard, const Request& request) {
    ChooseDirection(wizard, L"optConverttoO");
    SetPaths(wizard, L"txtImpOIF", L"txtImpO", request);
    wizard.Object(L"optOFileAttached").PutBool(L"value", true);
    loader.Call(L"ShowWizard");
    const ULONGLONG deadline = GetTickCount64() + request.timeoutMs;
    if (!WaitForNext(wizard, false, deadline) || !WaitForNext(wizard, true, deadline)) return GiveUp(wizard, request);
    return Finish(wizard);
}

int Convert(const Request& request) {
    try {
        const Dispatch loader = CreateObject(L"OIFTool.OIFToolLoader");
        const Dispatch wizard = loader.Object(L"WizIns");
        return request.toOIF ? ConvertToOIF(wizard, request) : ConvertToO(loader, wizard, request);
    } catch (const AutomationError& error) {
        if (error.code == REGDB_E_CLASSNOTREG)
            Print(L"OIFTool is not registered in this Wine prefix: there is no automation server \"" + error.member +
                  L"\". Install OIFTool in this prefix.");
        else Print(L"OIFTool's automation failed at " + error.member + L": " + error.reason);
        return Unreachable;
    }
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    Request request;
    if (!ParseArguments(argc, argv, request)) {
        Print(
            L"Usage: terramason-oifconvert.exe [--tool-folder FOLDER] [--timeout-seconds N] "
            L"(--to-oif SOURCE.o TARGET.oif | --to-o SOURCE.oif TARGET.o) | --close");
        return Usage;
    }
    if (request.close) return CloseTool();
    ToolStart(request.toolFolderGiven ? request.toolFolder : RegisteredToolFolder());
    if (FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {
        Print(L"COM could not be started.");
        return Unreachable;
    }
    const int result = Convert(request);
    CoUninitialize();
    return result;
}
