// The process with the host is this program once more. A variable of its environment names the pipe and where to begin.
#include "host/check/HostProcess.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <system_error>
#include <vector>

#include <windows.h>

namespace zul::host::check {

namespace {

/// "PIPE FIRST", and in a line each the checks that stand.
constexpr const char* variable = "ZUL_CHECK_HOST_PROCESS";

class Handle
{
public:
    explicit Handle(HANDLE handle = nullptr)
        : m_handle(handle)
    {}
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    HANDLE get() const { return m_handle; }
    HANDLE* out() { return &m_handle; }
    void close()
    {
        if (m_handle != nullptr) {
            CloseHandle(m_handle);
            m_handle = nullptr;
        }
    }

private:
    HANDLE m_handle;
};

[[noreturn]] void fail(const char* what)
{
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

/// A variable of the environment as long as this lives, which is while a child takes it over.
class Variable
{
public:
    explicit Variable(const std::string& value)
    {
        if (SetEnvironmentVariableA(variable, value.c_str()) == 0) {
            fail("SetEnvironmentVariable");
        }
    }
    ~Variable() { SetEnvironmentVariableA(variable, nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
};

/// Its value, which is gone afterwards: the host's own children are none of ours.
std::optional<std::string> takenVariable()
{
    std::string value(GetEnvironmentVariableA(variable, nullptr, 0), '\0');
    if (value.empty()) {
        return std::nullopt;
    }
    value.resize(GetEnvironmentVariableA(variable, value.data(), static_cast<DWORD>(value.size())));
    SetEnvironmentVariableA(variable, nullptr);
    return value;
}

std::string textOf(HANDLE pipe, const Start& start)
{
    std::string text =
        std::to_string(reinterpret_cast<std::uintptr_t>(pipe)) + ' ' + std::to_string(start.first);
    for (const std::string& check : start.stands) {
        text += '\n' + check;
    }
    return text;
}

/// The pipe, and where to begin.
std::pair<HANDLE, Start> readText(const std::string& text)
{
    Start start;
    std::size_t at = 0;
    const auto pipe = static_cast<std::uintptr_t>(std::stoull(text, &at));
    start.first = std::stoul(text.substr(at));
    for (std::size_t line = text.find('\n'); line != std::string::npos;) {
        const std::size_t next = text.find('\n', line + 1);
        start.stands.insert(text.substr(line + 1, next == std::string::npos ? next : next - line - 1));
        line = next;
    }
    return {reinterpret_cast<HANDLE>(pipe), start};
}

std::string endOf(DWORD code)
{
    std::array<char, 40> text{};
    // What ends a process that has no handler for it: an access violation, a stack that is full.
    if (code >= 0xC0000000) {
        std::snprintf(text.data(), text.size(), "exception 0x%08lx", static_cast<unsigned long>(code));
    } else {
        std::snprintf(text.data(), text.size(), "exit code %ld", static_cast<long>(code));
    }
    return text.data();
}

std::vector<wchar_t> ownFile()
{
    std::vector<wchar_t> name(32768); // no path is longer
    GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
    return name;
}

class Child final : public HostProcess
{
public:
    explicit Child(const Start& start)
    {
        SECURITY_ATTRIBUTES handedOn{sizeof handedOn, nullptr, TRUE};
        Handle write;
        if (CreatePipe(m_pipe.out(), write.out(), &handedOn, 0) == 0 ||
            SetHandleInformation(m_pipe.get(), HANDLE_FLAG_INHERIT, 0) == 0) {
            fail("CreatePipe");
        }
        // A host that hangs does not outlive who waits for it: the job ends with its last handle.
        *m_job.out() = CreateJobObjectW(nullptr, nullptr);
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        SetInformationJobObject(m_job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);

        std::fflush(nullptr);
        const Variable variableOfChild(textOf(write.get(), start));
        STARTUPINFOW info{};
        info.cb = sizeof info;
        info.dwFlags = STARTF_USESHOWWINDOW | STARTF_USESTDHANDLES;
        info.wShowWindow = SW_HIDE;
        info.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
        info.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
        info.hStdError = GetStdHandle(STD_ERROR_HANDLE);
        std::wstring arguments = GetCommandLineW();
        PROCESS_INFORMATION process{};
        if (CreateProcessW(ownFile().data(), arguments.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED,
                           nullptr, nullptr, &info, &process) == 0) {
            fail("CreateProcess");
        }
        *m_process.out() = process.hProcess;
        AssignProcessToJobObject(m_job.get(), m_process.get());
        ResumeThread(process.hThread);
        CloseHandle(process.hThread);
    }
    ~Child() override
    {
        if (!m_end) {
            TerminateProcess(m_process.get(), 1);
            WaitForSingleObject(m_process.get(), INFINITE);
        }
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    bool read(std::string& bytes) override
    {
        if (readWhatIsThere(bytes)) {
            return true;
        }
        DWORD code = 0;
        if (!m_end && WaitForSingleObject(m_process.get(), 20) == WAIT_OBJECT_0 &&
            GetExitCodeProcess(m_process.get(), &code) != 0) {
            m_end = code;
        }
        return readWhatIsThere(bytes);
    }

    std::string end() const override { return m_end ? endOf(*m_end) : std::string(); }

private:
    /// One can look into a pipe, and not wait for it.
    bool readWhatIsThere(std::string& bytes)
    {
        DWORD there = 0;
        if (PeekNamedPipe(m_pipe.get(), nullptr, 0, nullptr, &there, nullptr) == 0 || there == 0) {
            return false;
        }
        std::string some(there, '\0');
        DWORD count = 0;
        if (ReadFile(m_pipe.get(), some.data(), there, &count, nullptr) == 0) {
            return false;
        }
        bytes.append(some, 0, count);
        return count > 0;
    }

    Handle m_pipe;
    Handle m_job;
    Handle m_process;
    std::optional<DWORD> m_end;
};

} // namespace

std::unique_ptr<HostProcess> startHostProcess(const HostWork&, const Start& start)
{
    return std::make_unique<Child>(start);
}

void workIfStarted(const HostWork& work)
{
    const std::optional<std::string> text = takenVariable();
    if (!text) {
        return;
    }
    const auto [pipe, start] = readText(*text);
    SetHandleInformation(pipe, HANDLE_FLAG_INHERIT, 0);
    // A host that crashes ends the process, and asks nobody first.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    work(start, [end = pipe](const std::string& bytes) {
        std::fflush(nullptr); // what the host prints stands beside what is found
        DWORD written = 0;
        if (WriteFile(end, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) == 0) {
            TerminateProcess(GetCurrentProcess(), 1); // nobody listens any more
        }
    });
    // At once: what a host does when a program ends is no part of the contract.
    std::fflush(nullptr);
    TerminateProcess(GetCurrentProcess(), 0);
}

} // namespace zul::host::check
