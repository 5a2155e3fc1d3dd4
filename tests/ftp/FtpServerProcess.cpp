#include "tests/ftp/FtpServerProcess.h"

#include "tests/ftp/Sockets.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zul::test {

namespace {

std::uint16_t freePort()
{
    std::uint16_t port = 0;
    Socket listener = listenOnLoopback(port);
    closeSocket(listener);
    return port;
}

std::string userName(uid_t id)
{
    const passwd* entry = getpwuid(id);
    return entry == nullptr ? "root" : entry->pw_name;
}

} // namespace

std::string FtpServerProcess::leftOut(ServerKind kind)
{
    const char* folder = std::getenv("ZUL_FTP_SERVERS_DIR");
    if (folder != nullptr && std::string(folder) == "none") {
        return "left out by ZUL_FTP_SERVERS_DIR=none";
    }
    if (kind == ServerKind::PureFtpd && geteuid() != 0 && std::getenv("CI") == nullptr) {
        return "pure-ftpd needs the administrator's rights";
    }
    return {};
}

FtpServerProcess::FtpServerProcess(ServerKind kind, Channel channel)
    : m_kind(kind)
    , m_channel(channel)
{
    setenv("no_proxy", "127.0.0.1", 1);
    const char* folder = std::getenv("ZUL_FTP_SERVERS_DIR");
    m_folder = folder != nullptr && *folder != '\0' ? folder : ZUL_FTP_SERVERS_DIR;
    // The server may serve as another user than the one that runs the test.
    chmod(m_served.path().c_str(), 0777);
    m_port = freePort();
    const auto words = command();
    if (m_problem.empty() && access(words[0].c_str(), X_OK) != 0) {
        m_problem = words[0] + " is missing; tests/ftp/servers.sh brings it";
    }
    if (!m_problem.empty()) {
        return;
    }
    start(words);
    waitUntilItListens();
}

FtpServerProcess::~FtpServerProcess()
{
    if (m_process == -1) {
        return;
    }
    // The server's own children, one for each client, are in its group.
    kill(-m_process, SIGKILL);
    waitpid(m_process, nullptr, 0);
}

std::string FtpServerProcess::file(const std::string& name) const
{
    return m_folder + "/" + name;
}

std::vector<std::string> FtpServerProcess::command()
{
    const std::string port = std::to_string(m_port);
    if (m_kind == ServerKind::Pyftpdlib) {
        return {"/usr/bin/python3", ZUL_FTP_TEST_SOURCES "/pyftpd.py", m_served.path().string(), port};
    }

    if (m_kind == ServerKind::Vsftpd) {
        const std::string self = userName(geteuid());
        const std::string empty = m_private.file("empty");
        std::filesystem::create_directory(empty);
        std::string secure;
        if (m_channel == Channel::Secure) {
            makeCertificate();
            secure = "ssl_enable=YES\n"
                     "allow_anon_ssl=YES\n"
                     "force_anon_logins_ssl=YES\n"
                     "force_anon_data_ssl=YES\n"
                     "require_ssl_reuse=NO\n"
                     "rsa_cert_file=" +
                     certificate() + "\nrsa_private_key_file=" + m_private.file("key") + "\n";
        }
        const std::string settings =
            m_private.write("vsftpd.conf", "listen=YES\n"
                                           "listen_address=127.0.0.1\n"
                                           "background=NO\n"
                                           "run_as_launching_user=YES\n"
                                           "anonymous_enable=YES\n"
                                           "local_enable=NO\n"
                                           "write_enable=YES\n"
                                           "anon_upload_enable=YES\n"
                                           "anon_mkdir_write_enable=YES\n"
                                           "anon_other_write_enable=YES\n"
                                           "anon_world_readable_only=NO\n"
                                           "anon_umask=022\n"
                                           "allow_writeable_chroot=YES\n"
                                           "seccomp_sandbox=NO\n"
                                           "isolate=NO\n"
                                           "isolate_network=NO\n"
                                           "session_support=NO\n"
                                           "xferlog_enable=NO\n"
                                           "connect_from_port_20=NO\n"
                                           "ascii_download_enable=YES\n"
                                           "ascii_upload_enable=YES\n"
                                           "delay_failed_login=0\n"
                                           "listen_port=" +
                                               port + "\nanon_root=" + m_served.path().string() +
                                               "\nsecure_chroot_dir=" + empty + "\nftp_username=" + self +
                                               "\nnopriv_user=" + self + "\n" + secure);
        return {file("vsftpd"), settings};
    }

    // pure-ftpd serves a virtual user, under an account that is not the administrator's.
    const uid_t account = geteuid() == 0 ? 65534 : geteuid();
    const gid_t group = geteuid() == 0 ? 65534 : getegid();
    // The hash is that of "secret" in an old and quick form: the one that pure-pw makes takes seconds to check.
    const std::string users = m_private.write(
        "users", "user:$1$zul$lK1uZ5EFStcB2YARGoV.c.:" + std::to_string(account) + ":" +
                     std::to_string(group) + "::" + m_served.path().string() + "/./::::::::::::\n");
    const std::string make = "LD_LIBRARY_PATH='" + file("lib") + "' '" + file("pure-pw") + "' mkdb '" +
                             users + ".pdb' -f '" + users + "' >/dev/null 2>&1";
    if (access(file("pure-pw").c_str(), X_OK) == 0 &&
        std::system(make.c_str()) != 0) { // NOLINT(cert-env33-c)
        m_problem = "pure-pw failed";
    }
    return {file("pure-ftpd"),          "-S", "127.0.0.1," + port,  "-4", "-E", "-H", "-A", "-u", "1", "-l",
            "puredb:" + users + ".pdb", "-g", m_private.file("pid")};
}

void FtpServerProcess::makeCertificate()
{
    const std::string make = "openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=127.0.0.1 -addext "
                             "subjectAltName=IP:127.0.0.1 -keyout '" +
                             m_private.file("key") + "' -out '" + certificate() + "' >/dev/null 2>&1";
    if (std::system(make.c_str()) != 0) { // NOLINT(cert-env33-c)
        m_problem = "openssl made no certificate";
    }
}

void FtpServerProcess::start(const std::vector<std::string>& command)
{
    std::vector<char*> words;
    words.reserve(command.size() + 1);
    for (const std::string& word : command) {
        words.push_back(const_cast<char*>(word.c_str()));
    }
    words.push_back(nullptr);
    const std::string libraries = file("lib");
    const std::string python = file("python");
    const pid_t tester = getpid();
    m_process = fork();
    if (m_process != 0) {
        if (m_process > 0) {
            setpgid(m_process, m_process);
        }
        return;
    }
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != tester) {
        _exit(126);
    }
    setenv("LD_LIBRARY_PATH", libraries.c_str(), 1);
    setenv("PYTHONPATH", python.c_str(), 1);
    setenv("PYTHONDONTWRITEBYTECODE", "1", 1);
    setenv("PYTHONWARNINGS", "ignore", 1);
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nowhere, 0);
    dup2(nowhere, 1);
    dup2(nowhere, 2);
    execv(words[0], words.data());
    _exit(127);
}

void FtpServerProcess::waitUntilItListens()
{
    using namespace std::chrono_literals;
    const auto giveUp = std::chrono::steady_clock::now() + 20s;
    while (std::chrono::steady_clock::now() < giveUp) {
        if (waitpid(m_process, nullptr, WNOHANG) == m_process) {
            m_process = -1;
            m_problem = "the server ended at once";
            return;
        }
        Socket socket = connectToLoopback(m_port);
        const bool listens = socket != NoSocket;
        closeSocket(socket);
        if (listens) {
            return;
        }
        std::this_thread::sleep_for(20ms);
    }
    m_problem = "the server does not listen";
}

} // namespace zul::test
