#pragma once
// The packets of the server's protocol on a socket: whole messages in, a stream of bytes out.
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zul::tds {

/// What the first byte of a packet says.
enum class MessageType : std::uint8_t
{
    Batch = 0x01,
    Rpc = 0x03,
    Reply = 0x04,
    Attention = 0x06,
    Transaction = 0x0E,
    Login = 0x10,
    Prelogin = 0x12
};

/// The other side is gone, or was cut off on purpose.
class Gone : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct Message
{
    MessageType type = MessageType::Batch;
    std::string body;
};

/// Owns the socket. Belongs to one thread, except for shutDown().
class Channel
{
public:
    explicit Channel(int socket);
    ~Channel();
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    /// The next message, put together from its packets. Throws Gone.
    Message receive();

    /// Whether the other side has sent an attention while an answer is on its way to it.
    bool attentionWaits();

    /// Bytes of the answer; a packet goes out when it is full.
    void put(std::string_view bytes);
    /// The last packet of the answer.
    void finish();
    /// What was put so far goes out in a packet that promises more, and nothing comes behind it.
    void breakOff();

    /// Makes every call fail from now on; from any thread.
    void shutDown();

private:
    void send(bool last);
    void readExactly(char* to, std::size_t count);

    int m_socket;
    std::string m_out;
    std::uint8_t m_packet = 0;
};

} // namespace zul::tds
