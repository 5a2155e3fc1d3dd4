#include "tests/host/database/PostgresServer.h"

#include "host/database/odbc/OdbcEngine.h"

#include <arpa/inet.h>
#include <grp.h>
#include <netinet/in.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <thread>
#include <vector>

namespace zul::host {

namespace fs = std::filesystem;

namespace {

int freePort()
{
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    static_cast<void>(::bind(listener, reinterpret_cast<sockaddr*>(&address), length));
    ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
    ::close(listener);
    return ntohs(address.sin_port);
}

std::string programFolder()
{
    std::error_code none;
    std::string newest;
    for (const auto& entry : fs::directory_iterator("/usr/lib/postgresql", none)) {
        const std::string bin = (entry.path() / "bin").string();
        if (fs::exists(bin + "/initdb", none) && bin > newest) {
            newest = bin;
        }
    }
    return newest;
}

// The server refuses to be run by root; its package brings a user for it.
const passwd* serverUser()
{
    if (::geteuid() != 0) {
        return nullptr;
    }
    const passwd* user = ::getpwnam("postgres");
    return user != nullptr ? user : ::getpwnam("nobody");
}

// In the child: another user, output into the folder's log, gone with the parent.
void becomeProgram(const std::string& log, const std::vector<std::string>& command)
{
    if (const passwd* user = serverUser()) {
        if (::setgroups(0, nullptr) != 0 || ::setgid(user->pw_gid) != 0 || ::setuid(user->pw_uid) != 0) {
            ::_exit(126);
        }
    }
    ::prctl(PR_SET_PDEATHSIG, SIGQUIT);
    const int output = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666);
    ::dup2(output, 1);
    ::dup2(output, 2);
    if (::chdir("/") != 0) {
        ::_exit(126);
    }
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    ::setenv("LC_ALL", "C.UTF-8", 1);
    ::execv(arguments[0], arguments.data());
    ::_exit(127);
}

pid_t start(const std::string& log, const std::vector<std::string>& command)
{
    const pid_t child = ::fork();
    if (child == 0) {
        becomeProgram(log, command);
    }
    return child;
}

} // namespace

std::string odbcDriver(const std::string& fileName)
{
    std::error_code none;
    for (const auto& entry : fs::directory_iterator("/usr/lib", none)) {
        std::string path = entry.path().string() + "/odbc/" + fileName;
        if (fs::exists(path, none)) {
            return path;
        }
    }
    return {};
}

PostgresServer::PostgresServer()
    : m_programs(programFolder())
    , m_port(freePort())
{
    if (m_programs.empty()) {
        throw std::runtime_error("PostgreSQL is not installed");
    }
    if (odbcDriver("psqlodbcw.so").empty()) {
        throw std::runtime_error("the ODBC driver of PostgreSQL is not installed");
    }
    if (const passwd* user = serverUser()) {
        if (::chown(m_folder.path().c_str(), user->pw_uid, user->pw_gid) != 0) {
            throw std::runtime_error("the server's folder cannot be given to its user");
        }
    }
    const std::string data = m_folder.file("data");
    const std::string log = m_folder.file("log");
    int status = -1;
    ::waitpid(start(log, {m_programs + "/initdb", "-D", data, "-A", "trust", "-U", "postgres", "-E", "UTF8",
                          "--locale=C.UTF-8", "--no-sync"}),
              &status, 0);
    if (status != 0) {
        throw std::runtime_error("initdb failed");
    }
    m_server = start(log, {m_programs + "/postgres", "-D", data, "-c", "listen_addresses=127.0.0.1", "-p",
                           std::to_string(m_port), "-k", m_folder.path(), "-F"});
    for (int attempt = 0; attempt < 300; ++attempt) {
        try {
            OdbcEngine probe(connectionString("postgres"));
            return;
        } catch (const EngineError&) {
            if (::waitpid(m_server, &status, WNOHANG) == m_server) {
                throw std::runtime_error("the PostgreSQL server ended at once");
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
    }
    ::kill(m_server, SIGQUIT);
    ::waitpid(m_server, &status, 0);
    throw std::runtime_error("the PostgreSQL server does not answer");
}

PostgresServer::~PostgresServer()
{
    int status = 0;
    ::kill(m_server, SIGINT);
    ::waitpid(m_server, &status, 0);
}

PostgresServer* PostgresServer::shared(std::string& why)
{
    static std::unique_ptr<PostgresServer> server;
    static std::string reason;
    if (!server && reason.empty()) {
        try {
            server = std::make_unique<PostgresServer>();
        } catch (const std::exception& error) {
            reason = error.what();
        }
    }
    why = reason;
    return server.get();
}

// Booleans as bits and long texts whole: the driver's own defaults give texts of five characters, and cut.
std::string PostgresServer::connectionString(const std::string& database) const
{
    return "DRIVER=" + odbcDriver("psqlodbcw.so") + ";SERVER=127.0.0.1;PORT=" + std::to_string(m_port) +
           ";UID=postgres;DATABASE=" + database + ";BoolsAsChar=0;MaxVarcharSize=1000;SSLmode=disable";
}

std::string PostgresServer::newDatabase()
{
    std::string name = "zul" + std::to_string(++m_databases);
    OdbcEngine engine(connectionString("postgres"));
    engine.execute("CREATE DATABASE " + name, Language::Native);
    return name;
}

} // namespace zul::host
