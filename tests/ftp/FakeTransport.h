// A transport that does what the test says and writes down what it was asked.
#pragma once

#include "ftp/FtpTransport.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zul::test {

/// What the test and the transport share: the transport itself belongs to the client.
struct FakeWorld
{
    std::vector<std::string> calls;
    /// Answers by call name, taken one after the other; success when there is none.
    std::map<std::string, std::deque<ftp::ErrorCode>> answers;
    std::string lastResponse;
    std::string remoteContent; ///< of the file that is read by pieces
    std::size_t readAt = 0;
    std::vector<std::string> written; ///< pieces
    std::string currentDirectory = "/";
    std::deque<ftp::FindRecord> found;
    ftp::ConnectRequest request;
    std::vector<ftp::Handle> closed;

    ftp::ErrorCode answer(const std::string& call, const std::string& arguments = {})
    {
        calls.push_back(arguments.empty() ? call : call + " " + arguments);
        auto& queue = answers[call];
        if (queue.empty()) {
            return ftp::Success;
        }
        const auto code = queue.front();
        queue.pop_front();
        return code;
    }
};

class FakeTransport : public ftp::FtpTransport
{
public:
    static constexpr ftp::Handle Session = 1;
    static constexpr ftp::Handle Connection = 2;
    static constexpr ftp::Handle File = 3;
    static constexpr ftp::Handle Find = 4;

    explicit FakeTransport(std::shared_ptr<FakeWorld> world)
        : m_world(std::move(world))
    {}

    ftp::ErrorCode openSession(const std::string& agent, std::uint32_t accessType,
                               ftp::Handle& session) override
    {
        return given(m_world->answer("openSession", agent + " " + std::to_string(accessType)), session,
                     Session);
    }
    ftp::ErrorCode connect(ftp::Handle session, const ftp::ConnectRequest& request,
                           ftp::Handle& connection) override
    {
        m_world->request = request;
        if (session != Session) {
            return ftp::InvalidHandle;
        }
        return given(m_world->answer("connect", std::to_string(session)), connection, Connection);
    }
    ftp::ErrorCode closeHandle(ftp::Handle handle) override
    {
        m_world->closed.push_back(handle);
        return m_world->answer("closeHandle", std::to_string(handle));
    }
    ftp::ErrorCode putFile(ftp::Handle connection, const std::string& local, const std::string& remote,
                           std::uint32_t flags) override
    {
        return onConnection(connection, "putFile", local + "|" + remote + "|" + std::to_string(flags));
    }
    ftp::ErrorCode getFile(ftp::Handle connection, const std::string& remote, const std::string& local,
                           bool failIfExists, std::uint32_t attributes, std::uint32_t flags) override
    {
        return onConnection(connection, "getFile",
                            remote + "|" + local + "|" + (failIfExists ? "fail" : "replace") + "|" +
                                std::to_string(attributes) + "|" + std::to_string(flags));
    }
    ftp::ErrorCode openFile(ftp::Handle connection, const std::string& remote, std::uint32_t access,
                            std::uint32_t flags, ftp::Handle& file) override
    {
        return given(onConnection(connection, "openFile",
                                  remote + "|" + std::to_string(access) + "|" + std::to_string(flags)),
                     file, File);
    }
    ftp::ErrorCode readFile(ftp::Handle file, char* buffer, std::size_t wanted, std::size_t& got) override
    {
        got = 0;
        const auto code =
            file == File ? m_world->answer("readFile", std::to_string(wanted)) : ftp::InvalidHandle;
        if (code != ftp::Success) {
            return code;
        }
        got = std::min(wanted, m_world->remoteContent.size() - m_world->readAt);
        std::memcpy(buffer, m_world->remoteContent.data() + m_world->readAt, got);
        m_world->readAt += got;
        return code;
    }
    ftp::ErrorCode writeFile(ftp::Handle file, std::string_view data, std::size_t& written) override
    {
        written = 0;
        const auto code =
            file == File ? m_world->answer("writeFile", std::to_string(data.size())) : ftp::InvalidHandle;
        if (code != ftp::Success) {
            return code;
        }
        m_world->written.emplace_back(data);
        written = data.size();
        return code;
    }
    ftp::ErrorCode renameFile(ftp::Handle connection, const std::string& existing,
                              const std::string& newName) override
    {
        return onConnection(connection, "renameFile", existing + "|" + newName);
    }
    ftp::ErrorCode createDirectory(ftp::Handle connection, const std::string& directory) override
    {
        return onConnection(connection, "createDirectory", directory);
    }
    ftp::ErrorCode removeDirectory(ftp::Handle connection, const std::string& directory) override
    {
        return onConnection(connection, "removeDirectory", directory);
    }
    ftp::ErrorCode deleteFile(ftp::Handle connection, const std::string& name) override
    {
        return onConnection(connection, "deleteFile", name);
    }
    ftp::ErrorCode setCurrentDirectory(ftp::Handle connection, const std::string& directory) override
    {
        return onConnection(connection, "setCurrentDirectory", directory);
    }
    ftp::ErrorCode getCurrentDirectory(ftp::Handle connection, std::size_t capacity,
                                       std::string& directory) override
    {
        directory = m_world->currentDirectory;
        return onConnection(connection, "getCurrentDirectory", std::to_string(capacity));
    }
    ftp::ErrorCode findFirst(ftp::Handle connection, const std::string& filter, ftp::FindRecord& record,
                             ftp::Handle& find) override
    {
        return given(next(onConnection(connection, "findFirst", filter), record), find, Find);
    }
    ftp::ErrorCode findNext(ftp::Handle find, ftp::FindRecord& record) override
    {
        return next(find == Find ? m_world->answer("findNext") : ftp::InvalidHandle, record);
    }
    std::string lastResponse() const override { return m_world->lastResponse; }

private:
    ftp::ErrorCode onConnection(ftp::Handle connection, const std::string& call, const std::string& arguments)
    {
        if (connection != Connection) {
            return ftp::InvalidHandle;
        }
        return m_world->answer(call, arguments);
    }

    static ftp::ErrorCode given(ftp::ErrorCode code, ftp::Handle& handle, ftp::Handle value)
    {
        if (code == ftp::Success) {
            handle = value;
        }
        return code;
    }

    ftp::ErrorCode next(ftp::ErrorCode code, ftp::FindRecord& record)
    {
        if (code != ftp::Success) {
            return code;
        }
        if (m_world->found.empty()) {
            return ftp::NoMoreFiles;
        }
        record = m_world->found.front();
        m_world->found.pop_front();
        return code;
    }

    std::shared_ptr<FakeWorld> m_world;
};

} // namespace zul::test
