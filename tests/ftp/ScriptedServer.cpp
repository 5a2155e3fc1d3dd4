#include "tests/ftp/ScriptedServer.h"

#include "tests/ftp/Loopback.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace zul::test {

namespace {

int listenOnLoopback(std::uint16_t& port)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int reuse = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof(reuse));
    sockaddr_in address = loopback(0);
    socklen_t length = sizeof(address);
    if (bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
        ::listen(socket, 8) != 0 ||
        getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        throw std::runtime_error("no loopback port");
    }
    port = ntohs(address.sin_port);
    return socket;
}

void closeSocket(int& socket)
{
    if (socket != -1) {
        ::close(socket);
    }
    socket = -1;
}

std::string absolutePath(const std::string& directory, const std::string& name)
{
    if (name.starts_with('/')) {
        return name;
    }
    return directory == "/" ? "/" + name : directory + "/" + name;
}

} // namespace

ScriptedServer::ScriptedServer()
{
    setenv("no_proxy", "127.0.0.1", 1); // whatever the machine's environment says
    if (pipe(m_stop) != 0) {
        throw std::runtime_error("no pipe");
    }
    m_listener = listenOnLoopback(m_port);
    m_thread = std::thread([this] { run(); });
}

ScriptedServer::~ScriptedServer()
{
    closeSocket(m_stop[1]);
    m_thread.join();
    closeSocket(m_listener);
    closeSocket(m_stop[0]);
}

std::string ScriptedServer::portText() const
{
    return std::to_string(static_cast<std::int16_t>(m_port));
}

std::vector<std::string> ScriptedServer::commands() const
{
    const std::lock_guard lock(m_mutex);
    return m_commands;
}

void ScriptedServer::cutControlAfter(std::size_t bytes)
{
    m_controlLeft = bytes;
}

void ScriptedServer::run()
{
    for (;;) {
        std::array<pollfd, 2> waiting{pollfd{m_listener, POLLIN, 0}, pollfd{m_stop[0], POLLIN, 0}};
        poll(waiting.data(), waiting.size(), -1);
        if (waiting[1].revents != 0) {
            return;
        }
        const int control = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (control == -1) {
            continue;
        }
        const int immediately = 1;
        setsockopt(control, IPPROTO_TCP, TCP_NODELAY, &immediately, sizeof(immediately));
        Session session(*this, control);
        try {
            serve(session);
        } catch (const Ended&) {
        }
    }
}

void ScriptedServer::serve(Session& session)
{
    if (greeting) {
        greeting(session);
    } else {
        session.reply("220 ready");
    }
    std::string line;
    while (session.readLine(line)) {
        {
            const std::lock_guard lock(m_mutex);
            m_commands.push_back(line);
        }
        const std::size_t blank = line.find(' ');
        const std::string verb = line.substr(0, blank);
        const std::string argument = blank == std::string::npos ? std::string() : line.substr(blank + 1);
        if (const auto hook = on.find(verb); hook != on.end()) {
            hook->second(session, argument);
        } else {
            handle(session, verb, argument);
        }
        if (verb == "QUIT") {
            return;
        }
    }
}

void ScriptedServer::handle(Session& session, const std::string& verb, const std::string& argument)
{
    const std::string path = absolutePath(session.m_directory, argument);
    if (verb == "USER") {
        session.reply("331 password");
    } else if (verb == "PASS") {
        session.reply(loginReply);
    } else if (verb == "PWD") {
        session.reply("257 \"" + session.m_directory + "\" is current");
    } else if (verb == "CWD") {
        session.m_directory = path;
        session.reply("250 ok");
    } else if (verb == "TYPE") {
        session.reply("200 ok");
    } else if (verb == "PASV") {
        session.reply("227 Entering Passive Mode (" + session.listenForData() + ")");
    } else if (verb == "PORT") {
        session.reply(session.prepareActive(argument) ? "200 ok" : "501 bad address");
    } else if (verb == "LIST") {
        transfer(session, listing);
    } else if (verb == "RETR") {
        if (files.contains(path)) {
            transfer(session, files[path]);
        } else {
            session.reply("550 " + argument + ": no such file");
        }
    } else if (verb == "STOR") {
        session.reply("150 go on");
        if (session.openData()) {
            files[path] = session.readData();
            session.closeData();
        }
        session.reply("226 done");
    } else if (verb == "DELE") {
        session.reply(files.erase(path) == 1 ? "250 gone" : "550 " + argument + ": no such file");
    } else if (verb == "RNFR") {
        m_renaming = path;
        session.reply(files.contains(path) ? "350 to what?" : "550 " + argument + ": no such file");
    } else if (verb == "RNTO") {
        files[path] = files[m_renaming];
        files.erase(m_renaming);
        session.reply("250 renamed");
    } else if (verb == "MKD") {
        session.reply("257 \"" + path + "\" made");
    } else if (verb == "RMD") {
        session.reply("250 gone");
    } else if (verb == "QUIT") {
        session.reply("221 bye");
    } else {
        session.reply("502 " + verb + " unknown");
    }
}

void ScriptedServer::transfer(Session& session, const std::string& bytes)
{
    session.reply("150 here it comes");
    if (!session.openData()) {
        session.reply("425 no data connection");
        return;
    }
    const bool sent = session.sendData(bytes);
    session.closeData();
    session.reply(sent ? "226 done" : "426 broken off");
}

ScriptedServer::Session::~Session()
{
    closeSocket(m_control);
    closeSocket(m_dataListener);
    closeSocket(m_data);
}

bool ScriptedServer::Session::waitFor(int socket, short events) const
{
    std::array<pollfd, 2> waiting{pollfd{socket, events, 0}, pollfd{m_server.m_stop[0], POLLIN, 0}};
    poll(waiting.data(), waiting.size(), -1);
    return waiting[1].revents == 0;
}

bool ScriptedServer::Session::readLine(std::string& line)
{
    for (;;) {
        if (const std::size_t end = m_input.find("\r\n"); end != std::string::npos) {
            line = m_input.substr(0, end);
            m_input.erase(0, end + 2);
            return true;
        }
        std::array<char, 4096> buffer{};
        if (!waitFor(m_control, POLLIN)) {
            return false;
        }
        const ssize_t count = recv(m_control, buffer.data(), buffer.size(), 0);
        if (count <= 0) {
            return false;
        }
        m_input.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

void ScriptedServer::Session::send(std::string_view text)
{
    const std::size_t left = m_server.m_controlLeft;
    const bool cut = text.size() > left;
    if (cut) {
        text = text.substr(0, left);
    }
    while (!text.empty()) {
        if (!waitFor(m_control, POLLOUT)) {
            throw Ended{};
        }
        const ssize_t count = ::send(m_control, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0) {
            throw Ended{};
        }
        if (left != Never) {
            m_server.m_controlLeft -= static_cast<std::size_t>(count);
        }
        m_server.m_controlBytes += static_cast<std::size_t>(count);
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    if (cut) {
        hangUp();
    }
}

bool ScriptedServer::Session::prepareActive(const std::string& argument)
{
    const std::string local = "127,0,0,1,"; // then the port's high and low byte
    const std::size_t comma = argument.rfind(',');
    if (!argument.starts_with(local) || comma <= local.size()) {
        return false;
    }
    m_activePort = static_cast<std::uint16_t>(std::stoi(argument.substr(local.size())) * 256 +
                                              std::stoi(argument.substr(comma + 1)));
    return true;
}

bool ScriptedServer::Session::openData()
{
    if (m_dataListener != -1) {
        if (!waitFor(m_dataListener, POLLIN)) {
            throw Ended{};
        }
        m_data = accept4(m_dataListener, nullptr, nullptr, SOCK_CLOEXEC);
        closeSocket(m_dataListener);
    } else {
        m_data = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const sockaddr_in address = loopback(m_activePort);
        if (connect(m_data, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
            closeSocket(m_data);
        }
    }
    return m_data != -1;
}

bool ScriptedServer::Session::sendData(std::string_view bytes)
{
    if (m_data == -1) {
        return false;
    }
    bytes = bytes.substr(0, m_server.cutDataAfter);
    while (!bytes.empty()) {
        if (!waitFor(m_data, POLLOUT)) {
            throw Ended{};
        }
        const ssize_t count = ::send(m_data, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0) {
            return false;
        }
        m_server.m_dataBytes += static_cast<std::size_t>(count);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::string ScriptedServer::Session::readData()
{
    std::string bytes;
    while (m_data != -1) {
        std::array<char, 4096> buffer{};
        if (!waitFor(m_data, POLLIN)) {
            throw Ended{};
        }
        const ssize_t count = recv(m_data, buffer.data(), buffer.size(), 0);
        if (count <= 0) {
            break;
        }
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return bytes;
}

void ScriptedServer::Session::closeData()
{
    // The client has read all when it closes its side. A reply that overtakes the data is another matter.
    if (m_data != -1) {
        std::array<char, 4096> buffer{};
        shutdown(m_data, SHUT_WR);
        while (waitFor(m_data, POLLIN) && recv(m_data, buffer.data(), buffer.size(), 0) > 0) {
        }
    }
    closeSocket(m_data);
}

void ScriptedServer::Session::stall()
{
    std::array<char, 4096> buffer{};
    while (waitFor(m_control, POLLIN)) {
        if (recv(m_control, buffer.data(), buffer.size(), 0) <= 0) {
            break;
        }
    }
    throw Ended{};
}

void ScriptedServer::Session::hangUp()
{
    throw Ended{};
}

std::string ScriptedServer::Session::listenForData(const std::string& address)
{
    closeSocket(m_dataListener);
    std::uint16_t port = 0;
    m_dataListener = listenOnLoopback(port);
    // Always of one length, so that sessions that do the same have the same number of bytes.
    const auto digits = [](unsigned number) {
        const std::string text = std::to_string(number);
        return std::string(3 - text.size(), '0') + text;
    };
    return address + "," + digits(port / 256U) + "," + digits(port % 256U);
}

} // namespace zul::test
