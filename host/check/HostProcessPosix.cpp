// The process with the host is split off from this one.
#include "host/check/HostProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace zul::host::check {

namespace {

/// Leaves at once: what a host does when a program ends is no part of the contract.
[[noreturn]] void runChild(int pipe, const HostWork& work, const Start& start)
{
    work(start, [pipe](const std::string& bytes) {
        std::fflush(nullptr); // what the host prints stands beside what is found
        for (std::size_t at = 0; at < bytes.size();) {
            const ssize_t written = write(pipe, bytes.data() + at, bytes.size() - at);
            if (written < 0 && errno != EINTR) {
                _exit(1); // nobody listens any more
            }
            at += written < 0 ? 0 : static_cast<std::size_t>(written);
        }
    });
    std::fflush(nullptr);
    _exit(0);
}

std::string endOf(int status)
{
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return "signal " + std::to_string(signal) + ", " + strsignal(signal);
    }
    return "exit code " + std::to_string(WEXITSTATUS(status));
}

/// One child, from its start to its end.
class Child final : public HostProcess
{
public:
    Child(const HostWork& work, const Start& start)
    {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
        std::signal(SIGCHLD, SIG_DFL); // who started this program may have it passed over, and no end is told
        std::fflush(nullptr);          // or the child would print it again
        const pid_t parent = getpid();
        m_process = fork();
        if (m_process == 0) {
            close(ends[0]);
#ifdef __linux__
            // A host that hangs does not outlive who waits for it.
            prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
            if (getppid() != parent) {
                _exit(1);
            }
            runChild(ends[1], work, start);
        }
        m_pipe = ends[0];
        close(ends[1]);
        if (m_process < 0) {
            const int error = errno;
            close(m_pipe);
            throw std::system_error(error, std::generic_category(), "fork");
        }
    }
    ~Child() override
    {
        if (!m_status) {
            kill(m_process, SIGKILL);
            int status = 0;
            while (waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
            }
        }
        close(m_pipe);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Looks whether the child is there: one of its own children may hold the pipe open behind it.
    bool read(std::string& bytes) override
    {
        pollfd waited{m_pipe, POLLIN, 0};
        char some[4096];
        if (m_open && poll(&waited, 1, m_status ? 0 : 100) > 0) {
            const ssize_t count = ::read(m_pipe, some, sizeof some);
            if (count > 0) {
                bytes.append(some, static_cast<std::size_t>(count));
                return true;
            }
            m_open = count != 0;
        }
        int status = 0;
        if (!m_status && waitpid(m_process, &status, m_open ? WNOHANG : 0) == m_process) {
            m_status = status;
        }
        return false;
    }

    std::string end() const override { return m_status ? endOf(*m_status) : std::string(); }

private:
    pid_t m_process = -1;
    int m_pipe = -1;
    bool m_open = true;
    std::optional<int> m_status;
};

} // namespace

std::unique_ptr<HostProcess> startHostProcess(const HostWork& work, const Start& start)
{
    return std::make_unique<Child>(work, start);
}

void workIfStarted(const HostWork&)
{
    // A child that was split off is in the middle of its work.
}

} // namespace zul::host::check
