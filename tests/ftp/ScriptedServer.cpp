#include "tests/ftp/ScriptedServer.h"

#include <algorithm>
#include <array>

namespace zul::test {

namespace {

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
    passOverProxies();
    m_listener = listenOnLoopback(m_port);
    m_thread = std::thread([this] { run(); });
}

ScriptedServer::~ScriptedServer()
{
    m_waiting.end();
    m_thread.join();
    closeSocket(m_listener);
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
    while (m_waiting.until(m_listener, Waiting::For::Reading)) {
        const Socket control = acceptClient(m_listener);
        if (control == NoSocket) {
            continue;
        }
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

bool ScriptedServer::Session::readLine(std::string& line)
{
    for (;;) {
        if (const std::size_t end = m_input.find("\r\n"); end != std::string::npos) {
            line = m_input.substr(0, end);
            m_input.erase(0, end + 2);
            return true;
        }
        std::array<char, 4096> buffer{};
        if (!waitFor(m_control, Waiting::For::Reading)) {
            return false;
        }
        const std::ptrdiff_t count = receiveSome(m_control, buffer);
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
        if (!waitFor(m_control, Waiting::For::Writing)) {
            throw Ended{};
        }
        const std::ptrdiff_t count = sendSome(m_control, text);
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
    if (m_dataListener != NoSocket) {
        if (!waitFor(m_dataListener, Waiting::For::Reading)) {
            throw Ended{};
        }
        m_data = acceptClient(m_dataListener);
        closeSocket(m_dataListener);
    } else {
        m_data = connectToLoopback(m_activePort);
    }
    return m_data != NoSocket;
}

bool ScriptedServer::Session::sendData(std::string_view bytes)
{
    if (m_data == NoSocket) {
        return false;
    }
    bytes = bytes.substr(0, m_server.cutDataAfter);
    while (!bytes.empty()) {
        if (!waitFor(m_data, Waiting::For::Writing)) {
            throw Ended{};
        }
        const std::ptrdiff_t count = sendSome(m_data, bytes);
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
    while (m_data != NoSocket) {
        std::array<char, 4096> buffer{};
        if (!waitFor(m_data, Waiting::For::Reading)) {
            throw Ended{};
        }
        const std::ptrdiff_t count = receiveSome(m_data, buffer);
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
    if (m_data != NoSocket) {
        std::array<char, 4096> buffer{};
        endSending(m_data);
        while (waitFor(m_data, Waiting::For::Reading) && receiveSome(m_data, buffer) > 0) {
        }
    }
    closeSocket(m_data);
}

void ScriptedServer::Session::stall()
{
    std::array<char, 4096> buffer{};
    while (waitFor(m_control, Waiting::For::Reading)) {
        if (receiveSome(m_control, buffer) <= 0) {
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
