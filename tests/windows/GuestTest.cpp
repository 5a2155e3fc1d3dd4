// The component as a guest in a program that is not Qt's: its windows and its process stay as they were.
#include <gtest/gtest.h>

#include <clocale>
#include <cwchar>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <psapi.h>

#include "automation/Bstr.h"
#include "tests/windows/Component.h"

using namespace zul;
using namespace zul::windows;

namespace {

// What belongs to the host's process, as text.
std::string processState()
{
    wchar_t folder[MAX_PATH] = L"";
    wchar_t libraries[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, folder);
    GetDllDirectoryW(MAX_PATH, libraries);
    const auto filter = SetUnhandledExceptionFilter(nullptr);
    SetUnhandledExceptionFilter(filter);
    // "NAME=VALUE" each, up to an empty one.
    wchar_t* const variables = GetEnvironmentStringsW();
    std::wstring environment;
    for (const wchar_t* one = variables; *one != L'\0'; one += std::wcslen(one) + 1) {
        environment += std::wstring(one) + L'\n';
    }
    FreeEnvironmentStringsW(variables);
    std::wstring state = std::wstring(folder) + L"|" + libraries + L"|" + environment + L"|" +
                         std::to_wstring(reinterpret_cast<std::uintptr_t>(filter)) + L"|" +
                         std::to_wstring(GetErrorMode()) + L"|" + std::to_wstring(GetThreadLocale()) + L"|" +
                         std::to_wstring(IsProcessDPIAware());
    return std::string(state.begin(), state.end()) + "|" + std::setlocale(LC_ALL, nullptr);
}

// What the host's own loop and windows get to see.
struct HostSeen
{
    int posted = 0;
    int commands = 0;
} hostSeen;

constexpr UINT hostMessage = WM_APP + 1;
constexpr WORD hostCommand = 77;

LRESULT CALLBACK hostProcedure(HWND window, UINT message, WPARAM w, LPARAM l)
{
    if (message == hostMessage) {
        ++hostSeen.posted;
        return 0;
    }
    if (message == WM_COMMAND && LOWORD(w) == hostCommand) {
        ++hostSeen.commands;
        return 0;
    }
    return DefWindowProcW(window, message, w, l);
}

// The host's message loop as far as there is something in the queue. The exit code where it is told to end.
std::optional<int> runHostsLoop(HWND window, HACCEL accelerators)
{
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            return static_cast<int>(message.wParam);
        }
        if (TranslateAcceleratorW(window, accelerators, &message) == 0) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return std::nullopt;
}

// The host's window, with a field that has the focus.
class HostWindow
{
public:
    HostWindow()
    {
        WNDCLASSW description{};
        description.lpfnWndProc = hostProcedure;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = L"ZulTestHost";
        RegisterClassW(&description);
        m_window = CreateWindowExW(0, L"ZulTestHost", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 400,
                                   300, nullptr, nullptr, description.hInstance, nullptr);
        m_field = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 10, 10, 200, 25, m_window, nullptr,
                                  description.hInstance, nullptr);
        SetForegroundWindow(m_window);
        SetActiveWindow(m_window);
        SetFocus(m_field);
    }
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;
    ~HostWindow() { DestroyWindow(m_window); }
    HWND get() const { return m_window; }
    HWND field() const { return m_field; }

private:
    HWND m_window;
    HWND m_field;
};

// What a timer of the host's sees while the component shows its window.
struct Seen
{
    HWND host = nullptr;
    HWND shown = nullptr;
    HWND owner = nullptr;
    bool hostEnabled = true;
    int ticks = 0;
    HANDLE other = nullptr; // a program that has to end before the window is closed
    bool quits = false;     // the host is told to end meanwhile, and that closes the window
    bool toldToEnd = false;
} seen;

BOOL CALLBACK findOther(HWND window, LPARAM)
{
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    if (window != seen.host && IsWindowVisible(window) && std::wstring(name).starts_with(L"Qt")) {
        seen.shown = window;
        return FALSE;
    }
    return TRUE;
}

void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD)
{
    ++seen.ticks;
    if (seen.host != nullptr) {
        PostMessageW(seen.host, hostMessage, 0, 0);
    }
    EnumThreadWindows(GetCurrentThreadId(), findOther, 0);
    if (seen.shown == nullptr || seen.ticks < 5 ||
        (seen.other != nullptr && WaitForSingleObject(seen.other, 0) == WAIT_TIMEOUT)) {
        return;
    }
    seen.owner = GetWindow(seen.shown, GW_OWNER);
    seen.hostEnabled = IsWindowEnabled(seen.host);
    if (seen.quits) {
        if (!seen.toldToEnd) {
            seen.toldToEnd = true;
            PostQuitMessage(7);
        }
        return;
    }
    PostMessageW(seen.shown, WM_CLOSE, 0, 0);
}

// The files of Qt's that the process has loaded, libraries and plug-ins.
std::vector<std::filesystem::path> loadedPartsOfQt()
{
    std::vector<HMODULE> modules(1024);
    DWORD bytes = 0;
    EnumProcessModules(GetCurrentProcess(), modules.data(),
                       static_cast<DWORD>(modules.size() * sizeof(HMODULE)), &bytes);
    modules.resize(bytes / sizeof(HMODULE));
    std::vector<std::filesystem::path> found;
    for (const HMODULE module : modules) {
        wchar_t file[MAX_PATH] = L"";
        GetModuleFileNameW(module, file, MAX_PATH);
        const std::filesystem::path path(file);
        const std::wstring name = path.filename().wstring();
        if (name.starts_with(L"Qt") || name.ends_with(L"Zul.dll")) {
            found.push_back(path);
        }
    }
    return found;
}

// A host that brings a Qt of its own: a library of Qt's usual name is loaded, and environment and current folder lead
// to plug-ins that are not the component's.
class HostsOwnQt
{
public:
    HostsOwnQt()
    {
        namespace fs = std::filesystem;
        const fs::path bin = fs::path(componentFile()).parent_path();
        m_folder = fs::temp_directory_path() / L"zul host's Qt";
        fs::remove_all(m_folder);
        for (const fs::path& folder : {m_folder / L"platforms", m_folder / L"imageformats"}) {
            fs::create_directories(folder);
            for (const auto& plugin : fs::directory_iterator(bin / folder.filename())) {
                fs::copy_file(plugin.path(), folder / plugin.path().filename());
            }
        }
        fs::copy_file(bin / L"Qt6CoreZul.dll", m_folder / L"Qt6Core.dll");
        m_library = LoadLibraryW((m_folder / L"Qt6Core.dll").c_str());
        SetEnvironmentVariableW(L"QT_PLUGIN_PATH", m_folder.c_str());
        SetEnvironmentVariableW(L"QT_QPA_PLATFORM_PLUGIN_PATH", (m_folder / L"platforms").c_str());
        SetEnvironmentVariableW(L"QT_QPA_PLATFORM", L"none");
        SetEnvironmentVariableW(L"QT_STYLE_OVERRIDE", L"none");
        m_current = fs::current_path();
        fs::current_path(m_folder);
    }
    HostsOwnQt(const HostsOwnQt&) = delete;
    HostsOwnQt& operator=(const HostsOwnQt&) = delete;
    ~HostsOwnQt()
    {
        for (const wchar_t* const name :
             {L"QT_PLUGIN_PATH", L"QT_QPA_PLATFORM_PLUGIN_PATH", L"QT_QPA_PLATFORM", L"QT_STYLE_OVERRIDE"}) {
            SetEnvironmentVariableW(name, nullptr);
        }
        std::filesystem::current_path(m_current);
        FreeLibrary(m_library);
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }
    const std::filesystem::path& folder() const { return m_folder; }
    HMODULE library() const { return m_library; }

private:
    std::filesystem::path m_folder;
    std::filesystem::path m_current;
    HMODULE m_library = nullptr;
};

class Guest : public testing::Test
{
protected:
    // Shows the options dialog until the timer closes it.
    static void showOptions(_SmsCreator& creator)
    {
        ComPtr<_SqlConnection> connection = makeConnection();
        _SqlConnection* lent = connection.get();
        Bstr folder(u"C:\\");
        VARIANT_BOOL touch = VARIANT_FALSE;
        VARIANT_BOOL shown = VARIANT_FALSE;
        const UINT_PTR timer = SetTimer(nullptr, 0, 100, tick);
        EXPECT_EQ(creator.ShowOptions(&lent, folder.inOut(), &touch, &shown), S_OK);
        KillTimer(nullptr, timer);
        EXPECT_EQ(shown, VARIANT_TRUE);
    }

    const Apartment apartment;
    const Registered registered;
};

} // namespace

// The first test that shows a window: what a process has loaded stays.
TEST_F(Guest, AHostsOwnQtIsNotMet)
{
    const HostsOwnQt own;
    ASSERT_NE(own.library(), nullptr) << GetLastError();
    seen = Seen{};
    const ComPtr<_SmsCreator> creator = makeCreator();
    showOptions(*creator);
    EXPECT_NE(seen.shown, nullptr);
    EXPECT_EQ(GetModuleHandleW(L"Qt6Core.dll"), own.library());
    bool platform = false;
    for (const std::filesystem::path& part : loadedPartsOfQt()) {
        if (part.filename() == L"Qt6Core.dll") {
            continue;
        }
        EXPECT_TRUE(part.wstring().starts_with(componentFile().substr(0, componentFile().rfind(L'\\'))))
            << part;
        platform = platform || part.filename() == L"qwindowsZul.dll";
    }
    EXPECT_TRUE(platform);
}

TEST_F(Guest, AModalWindowIsModalToTheHostsWindows)
{
    HWND already = CreateWindowExW(0, L"STATIC", L"disabled before", WS_POPUP | WS_VISIBLE | WS_DISABLED, 0,
                                   0, 50, 50, nullptr, nullptr, nullptr, nullptr);
    const HostWindow host;
    seen = Seen{};
    seen.host = host.get();
    const ComPtr<_SmsCreator> creator = makeCreator();
    showOptions(*creator);
    EXPECT_NE(seen.shown, nullptr);
    EXPECT_EQ(seen.owner, host.get()) << "the host's active window owns ours";
    EXPECT_FALSE(seen.hostEnabled);
    EXPECT_GE(seen.ticks, 5) << "the host's timers go on meanwhile";
    EXPECT_TRUE(IsWindowEnabled(host.get()));
    EXPECT_EQ(GetActiveWindow(), host.get());
    EXPECT_EQ(GetFocus(), host.field()) << "the focus is where it was";
    EXPECT_FALSE(IsWindowEnabled(already)) << "what was disabled before stays so";
    DestroyWindow(already);
}

TEST_F(Guest, TheHostsMessagesAndAcceleratorsGoOn)
{
    ACCEL key{FVIRTKEY, VK_F9, hostCommand};
    const HACCEL accelerators = CreateAcceleratorTableW(&key, 1);
    const HostWindow host;
    seen = Seen{};
    seen.host = host.get();
    hostSeen = HostSeen{};
    const ComPtr<_SmsCreator> creator = makeCreator();
    showOptions(*creator);
    EXPECT_GE(hostSeen.posted, 4) << "messages of the host's come through while our window is shown";
    EXPECT_EQ(runHostsLoop(host.get(), accelerators), std::nullopt) << "nothing ends the host";
    PostMessageW(host.field(), WM_KEYDOWN, VK_F9, 0);
    PostMessageW(host.field(), WM_KEYUP, VK_F9, 0);
    EXPECT_EQ(runHostsLoop(host.get(), accelerators), std::nullopt);
    EXPECT_EQ(hostSeen.commands, 1);
    DestroyAcceleratorTable(accelerators);
}

TEST_F(Guest, AHostThatIsToldToEndMeanwhileEnds)
{
    const HostWindow host;
    seen = Seen{};
    seen.host = host.get();
    seen.quits = true;
    const ComPtr<_SmsCreator> creator = makeCreator();
    showOptions(*creator);
    EXPECT_TRUE(IsWindowEnabled(host.get()));
    EXPECT_EQ(runHostsLoop(host.get(), nullptr), 7) << "its loop gets the message with its code";
    // And one that asks its user first, and goes on, has its windows as before.
    seen = Seen{};
    seen.host = host.get();
    showOptions(*creator);
    EXPECT_NE(seen.shown, nullptr);
    EXPECT_GE(seen.ticks, 5);
}

TEST_F(Guest, AWindowIsShownAgainAndWithoutAnyOfTheHosts)
{
    const ComPtr<_SmsCreator> creator = makeCreator();
    for (int i = 0; i < 2; ++i) {
        seen = Seen{};
        showOptions(*creator);
        EXPECT_NE(seen.shown, nullptr);
        EXPECT_EQ(seen.owner, nullptr);
        VARIANT result{};
        EXPECT_EQ(creator->DiscardOptionsForm(&result), S_OK);
    }
}

TEST_F(Guest, AnotherHostShowsItsWindowsMeanwhile)
{
    wchar_t self[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring command = L"\"" + std::wstring(self) + L"\" --gtest_filter=Guest.AWindowIsShownAgain*";
    const ComPtr<_SmsCreator> creator = makeCreator();
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    ASSERT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                               &process));
    seen = Seen{};
    seen.other = process.hProcess;
    showOptions(*creator);
    EXPECT_NE(seen.shown, nullptr);
    DWORD code = 99;
    EXPECT_TRUE(GetExitCodeProcess(process.hProcess, &code));
    EXPECT_EQ(code, 0u);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

TEST_F(Guest, TheHostsProcessStaysAsItWas)
{
    const HostWindow host;
    const std::string before = processState();
    seen = Seen{};
    seen.host = host.get();
    {
        const ComPtr<_SmsCreator> creator = makeCreator();
        showOptions(*creator);
    }
    EXPECT_EQ(processState(), before);
    // A library that has shown a window stays.
    EXPECT_EQ(canUnloadNow(), S_FALSE);
}
