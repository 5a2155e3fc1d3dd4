// A small FTP server in a thread, which can be told to misbehave.
#pragma once

#include "tests/ftp/Sockets.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace zul::test {

/// Serves one client after the other on 127.0.0.1, on a port of the system's choice. Out of the box it keeps
/// its files in memory and knows what a client needs; the hooks, to be set before the first connection, put
/// other behaviour in place of a command's.
class ScriptedServer
{
public:
    /// Whether a transfer in the active mode can be tried with it.
    static bool knowsActiveMode() { return mayConnectBack(); }

    static constexpr std::size_t Never = std::numeric_limits<std::size_t>::max();

    /// One client's connection, as the hooks see it.
    class Session
    {
    public:
        /// Sends as it is; ends the session when the server is told to cut there.
        void send(std::string_view text);
        void reply(std::string_view line) { send(std::string(line) + "\r\n"); }
        /// Opens the data connection that PASV or PORT prepared.
        bool openData();
        /// Sends on the data connection; false when the client has closed it.
        bool sendData(std::string_view bytes);
        std::string readData();
        void closeData();
        /// Says and does nothing more until the client goes or the test ends.
        [[noreturn]] void stall();
        /// Closes the control connection.
        [[noreturn]] void hangUp();
        /// Takes the argument of a PORT command; false when it is not on this machine.
        bool prepareActive(const std::string& argument);
        /// "127,0,0,1,p,q" of a fresh listening socket for the data.
        std::string listenForData(const std::string& address = "127,0,0,1");

    private:
        friend class ScriptedServer;
        Session(ScriptedServer& server, Socket control)
            : m_server(server)
            , m_control(control)
        {}
        ~Session();
        bool readLine(std::string& line);
        /// False when the test ends meanwhile.
        bool waitFor(Socket socket, Waiting::For what) const
        {
            return m_server.m_waiting.until(socket, what);
        }

        ScriptedServer& m_server;
        Socket m_control;
        Socket m_dataListener = NoSocket;
        Socket m_data = NoSocket;
        std::uint16_t m_activePort = 0;
        std::string m_input;
        std::string m_directory = "/";
    };

    using Hook = std::function<void(Session&, const std::string& argument)>;

    ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;
    ~ScriptedServer();

    std::uint16_t port() const { return m_port; }
    std::string portText() const;
    /// The command lines that clients have sent so far, in their order.
    std::vector<std::string> commands() const;
    /// Ends the control connection after so many bytes from now on; later ones end at once.
    void cutControlAfter(std::size_t bytes);
    /// Bytes sent on control connections and on data connections so far.
    std::size_t controlBytes() const { return m_controlBytes; }
    std::size_t dataBytes() const { return m_dataBytes; }

    std::map<std::string, std::string> files; ///< content by absolute path
    std::string listing;                      ///< what LIST sends
    std::function<void(Session&)> greeting;   ///< in place of "220 ready"
    std::map<std::string, Hook> on;           ///< by verb
    std::size_t cutDataAfter = Never;         ///< bytes of one data connection
    std::string loginReply = "230 welcome";

private:
    struct Ended
    {};

    void run();
    void serve(Session& session);
    void handle(Session& session, const std::string& verb, const std::string& argument);
    void transfer(Session& session, const std::string& bytes);

    Socket m_listener = NoSocket;
    Waiting m_waiting;
    std::uint16_t m_port = 0;
    std::atomic<std::size_t> m_controlBytes = 0;
    std::atomic<std::size_t> m_dataBytes = 0;
    std::atomic<std::size_t> m_controlLeft = Never;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_commands;
    std::string m_renaming;
    std::thread m_thread;
};

} // namespace zul::test
