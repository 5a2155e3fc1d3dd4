#include "tests/host/tds/Session.h"

#include "host/database/Names.h"

#include <array>
#include <cstdio>
#include <utility>

namespace zul::tds {

namespace {

constexpr std::uint8_t tokenColumns = 0x81;
constexpr std::uint8_t tokenError = 0xAA;
constexpr std::uint8_t tokenNote = 0xAB;
constexpr std::uint8_t tokenLogin = 0xAD;
constexpr std::uint8_t tokenValue = 0xAC;
constexpr std::uint8_t tokenRow = 0xD1;
constexpr std::uint8_t tokenChange = 0xE3;
constexpr std::uint8_t tokenStatus = 0x79;
constexpr std::uint8_t tokenDone = 0xFD;
constexpr std::uint8_t tokenDoneCall = 0xFE;
constexpr std::uint8_t tokenDoneInCall = 0xFF;

constexpr std::uint16_t doneMore = 0x01;
constexpr std::uint16_t doneError = 0x02;
constexpr std::uint16_t doneInTransaction = 0x04;
constexpr std::uint16_t doneCount = 0x10;
constexpr std::uint16_t doneAttention = 0x20;

constexpr std::string_view transactionName("\1\0\0\0\0\0\0\0", 8);

void skipHeaders(Reader& in)
{
    const std::uint32_t length = in.u32();
    in.raw(length - std::size_t{4});
}

std::string change(std::uint8_t type, std::string_view fresh, std::string_view old)
{
    Writer body;
    body.u8(type).u8(fresh.size()).raw(fresh).u8(old.size()).raw(old);
    Writer token;
    token.u8(tokenChange).u16(body.bytes().size()).raw(body.bytes());
    return token.bytes();
}

std::string textChange(std::uint8_t type, std::string_view fresh, std::string_view old)
{
    Writer body;
    body.u8(type).shortText(fresh).shortText(old);
    Writer token;
    token.u8(tokenChange).u16(body.bytes().size()).raw(body.bytes());
    return token.bytes();
}

std::string clearPassword(std::string_view bytes)
{
    std::string clear;
    for (const char c : bytes) {
        const auto byte = static_cast<std::uint8_t>(static_cast<std::uint8_t>(c) ^ 0xA5U);
        clear += static_cast<char>(byte >> 4U | byte << 4U);
    }
    return Reader::textOf(clear);
}

std::string textOf(const Parameter& parameter)
{
    const auto* text = std::get_if<std::string>(&parameter.value);
    return text != nullptr ? *text : std::string();
}

std::int64_t numberOf(const Parameter& parameter)
{
    const auto* number = std::get_if<std::int64_t>(&parameter.value);
    return number != nullptr ? *number : 0;
}

// A parameter with the name and the mark that stand before it in a call.
Parameter nextParameter(Reader& in)
{
    in.text(in.u8());
    in.u8();
    return readParameter(in);
}

} // namespace

Session::Session(Channel& channel, const ServerOptions& options, Faults& faults)
    : m_channel(channel)
    , m_options(options)
    , m_faults(faults)
{}

void Session::serve()
{
    while (true) {
        const Message message = m_channel.receive();
        m_failed = false;
        m_inCall = message.type == MessageType::Rpc;
        m_rowsUntilCut.reset();
        if (message.type == MessageType::Batch || message.type == MessageType::Rpc ||
            message.type == MessageType::Transaction) {
            m_faults.count();
        }
        try {
            switch (message.type) {
            case MessageType::Prelogin:
                answerPrelogin();
                break;
            case MessageType::Login:
                signIn(message.body);
                break;
            case MessageType::Batch:
                answerBatch(message.body);
                break;
            case MessageType::Rpc:
                answerCall(message.body);
                break;
            case MessageType::Transaction:
                answerTransaction(message.body);
                break;
            case MessageType::Attention:
                endOfAnswer(doneAttention);
                break;
            default:
                throw Gone("a message of a kind that nobody knows");
            }
        } catch (const ServerError& error) {
            complain(error);
            endOfAnswer(0);
        }
        m_channel.finish();
        if (m_cutsAfterwards) {
            throw Gone("cut");
        }
    }
}

void Session::answerPrelogin()
{
    // Version, no encryption, no instance, no thread, one answer at a time.
    Writer options;
    std::uint16_t at = 5 * 5 + 1;
    const std::array<std::uint16_t, 5> lengths{6, 1, 1, 0, 1};
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        // Numbers of this message alone stand the other way round.
        options.u8(i).u8(at >> 8U).u8(at & 0xFFU).u8(lengths.at(i) >> 8U).u8(lengths.at(i) & 0xFFU);
        at = static_cast<std::uint16_t>(at + lengths.at(i));
    }
    options.u8(0xFF).raw(std::string_view("\x0D\0\0\0\0\0", 6)).u8(2).u8(0).u8(0);
    m_channel.put(options.bytes());
}

void Session::signIn(std::string_view body)
{
    const auto bytesAt = [&](std::size_t place) {
        Reader offsets(body.substr(place, 4));
        const std::size_t from = offsets.u16();
        const std::size_t units = offsets.u16();
        return Reader(body.substr(from)).raw(units * 2);
    };
    const std::string user = Reader::textOf(bytesAt(40));
    if (user != m_options.user || clearPassword(bytesAt(44)) != m_options.password) {
        throw ServerError{18456, 14, "Login failed for user '" + user + "'."};
    }
    const std::string database = Reader::textOf(bytesAt(68));
    if (!database.empty() && database != "zul") {
        throw ServerError{911, 16,
                          "Database '" + database +
                              "' does not exist. Make sure that the name is entered"
                              " correctly."};
    }
    m_database = std::make_unique<StandInDatabase>(m_options.file);
    m_channel.put(textChange(1, "zul", "master"));
    say(tokenNote, {5701, 0, "Changed database context to 'zul'."});
    m_channel.put(change(7, std::string_view("\x09\x04\xD0\x00\x34", 5), {}));
    Writer login;
    login.u8(1).u8(0x74).u8(0).u8(0).u8(4).shortText("Microsoft SQL Server").u8(13).u8(0).u8(0).u8(0);
    Writer token;
    token.u8(tokenLogin).u16(login.bytes().size()).raw(login.bytes());
    m_channel.put(token.bytes());
    m_channel.put(textChange(4, "4096", "4096"));
    endOfAnswer(0);
}

void Session::answerBatch(std::string_view body)
{
    Reader in(body);
    skipHeaders(in);
    runText(in.text(in.left() / 2), {});
    endOfAnswer(0);
}

void Session::answerTransaction(std::string_view body)
{
    constexpr std::uint16_t beginRequest = 5;
    constexpr std::uint16_t commitRequest = 7;
    constexpr std::uint16_t rollbackRequest = 8;
    Reader in(body);
    skipHeaders(in);
    const std::uint16_t request = in.u16();
    trace("transaction request " + std::to_string(request));
    const auto cut = m_faults.meets("transaction " + std::to_string(request));
    if (cut) {
        throw Gone("cut");
    }
    const bool goesOn =
        request != beginRequest && in.left() > 1 && (in.raw(in.u8() * std::size_t{2}), in.u8() & 1U) != 0;
    if (request == commitRequest) {
        m_database->commit();
        m_channel.put(change(9, {}, transactionName));
    } else if (request == rollbackRequest) {
        if (!m_database->inTransaction()) {
            throw ServerError{3903, 16,
                              "The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION."};
        }
        m_database->rollback();
        m_channel.put(change(10, {}, transactionName));
    }
    if (request == beginRequest || goesOn) {
        m_database->begin();
        m_channel.put(change(8, transactionName, {}));
    }
    m_toldTransaction = m_database->inTransaction();
    endOfAnswer(0);
}

void Session::answerCall(std::string_view body)
{
    Reader in(body);
    skipHeaders(in);
    while (!in.atEnd()) {
        const std::uint16_t length = in.u16();
        const std::uint16_t number = length == 0xFFFF ? in.u16() : std::uint16_t{0};
        const std::string name = length == 0xFFFF ? std::string() : host::foldedName(in.text(length));
        in.u16();
        if (number == 10 || name == "sp_executesql") {
            executeSql(in);
        } else if (number == 11 || name == "sp_prepare") {
            prepare(in);
        } else if (number == 12 || name == "sp_execute") {
            execute(in);
        } else if (number == 13 || name == "sp_prepexec") {
            prepareAndExecute(in);
        } else if (number == 15 || name == "sp_unprepare") {
            unprepare(in);
        } else {
            callProcedure(name.empty() ? "number " + std::to_string(number) : name, in);
        }
        break; // one call a message is all that the driver sends
    }
    endOfCall();
    m_channel.put(*std::exchange(m_lastDone, std::nullopt));
}

std::vector<Parameter> Session::parameters(Reader& in)
{
    std::vector<Parameter> all;
    while (!in.atEnd()) {
        all.push_back(nextParameter(in));
    }
    return all;
}

void Session::executeSql(Reader in)
{
    const std::string text = textOf(nextParameter(in));
    const std::string declarations = in.atEnd() ? std::string() : textOf(nextParameter(in));
    trace("sp_executesql " + declarations);
    runText(text, parameters(in));
}

void Session::prepare(Reader in)
{
    nextParameter(in);
    nextParameter(in);
    m_prepared[++m_lastHandle] = textOf(nextParameter(in));
    returnHandle(m_lastHandle);
}

void Session::prepareAndExecute(Reader in)
{
    nextParameter(in);
    trace("sp_prepexec " + textOf(nextParameter(in)));
    const std::string text = textOf(nextParameter(in));
    m_prepared[++m_lastHandle] = text;
    const std::int64_t handle = m_lastHandle;
    runText(text, parameters(in));
    returnHandle(handle);
}

void Session::execute(Reader in)
{
    const auto known = m_prepared.find(numberOf(nextParameter(in)));
    trace("sp_execute");
    if (known == m_prepared.end()) {
        throw ServerError{8179, 16, "Could not find prepared statement with that handle."};
    }
    runText(known->second, parameters(in));
}

void Session::unprepare(Reader in)
{
    trace("sp_unprepare");
    m_prepared.erase(numberOf(nextParameter(in)));
}

// A catalogue procedure comes as a call of its own, with named texts.
void Session::callProcedure(const std::string& name, Reader in)
{
    if (!m_options.hasCatalogue || (name != "sp_tables" && name != "sp_pkeys")) {
        throw ServerError{2812, 16, "Could not find stored procedure '" + name + "'."};
    }
    const std::vector<Parameter> all = parameters(in);
    runText("EXEC " + name + " N'" + (all.empty() ? std::string() : textOf(all.front())) + "'", {});
}

void Session::trace(const std::string& text) const
{
    if (m_options.trace) {
        std::fprintf(stderr, "%.400s\n", text.c_str());
    }
}

void Session::breakOff()
{
    m_channel.breakOff();
    // What the client still sends is taken and left unanswered, until it goes or the server ends.
    while (m_silent) {
        m_channel.receive();
    }
    throw Gone("cut");
}

void Session::runText(const std::string& text, const std::vector<Parameter>& parameters)
{
    trace((m_inCall ? "call " : "batch ") + text);
    if (const auto fault = m_faults.meets(text)) {
        m_silent = fault->silent;
        m_cutsAfterwards = fault->afterwards;
        if (fault->deadlock) {
            if (m_database->inTransaction()) {
                m_database->rollback();
            }
            throw ServerError{1205, 13,
                              "Transaction was deadlocked and has been chosen as the deadlock victim."};
        }
        if (!fault->rows && !fault->afterwards) {
            breakOff();
        }
        m_rowsUntilCut = fault->rows;
    }
    if (!m_options.hasCatalogue && host::foldedName(text.substr(0, 8)) == "exec sp_") {
        throw ServerError{2812, 16, "Could not find stored procedure."};
    }
    if (!m_options.hasOutput && text.find(" OUTPUT inserted.") != std::string::npos) {
        throw ServerError{102, 15, "Incorrect syntax near 'OUTPUT'."};
    }
    if (!m_options.hasOutput && text.find("XACT_ABORT") != std::string::npos) {
        throw ServerError{195, 15, "'XACT_ABORT' is not a recognized SET option."};
    }
    if (m_options.heard) {
        m_options.heard(text, parameters);
    }
    m_database->run(text, parameters, *this);
}

void Session::columns(const std::vector<ResultColumn>& columns)
{
    Writer out;
    out.u8(tokenColumns).u16(columns.size());
    m_types.clear();
    for (const ResultColumn& column : columns) {
        m_types.push_back(column.type);
        out.u32(0).u16(1); // may be NULL
        writeType(out, column.type);
        out.shortText(column.name);
    }
    if (m_lastDone) {
        done(std::nullopt);
    }
    m_channel.put(out.bytes());
}

bool Session::row(const std::vector<Datum>& values)
{
    if (m_rowsUntilCut && (*m_rowsUntilCut)-- <= 0) {
        breakOff();
    }
    m_row.clear();
    m_row.u8(tokenRow);
    for (std::size_t i = 0; i < values.size(); ++i) {
        try {
            writeValue(m_row, m_types[i], values[i]);
        } catch (const std::out_of_range&) {
            throw ServerError{8115, 16, "A value does not fit into its column of the answer."};
        }
    }
    m_channel.put(m_row.bytes());
    return !m_channel.attentionWaits();
}

void Session::done(std::optional<std::int64_t> count)
{
    if (m_lastDone) {
        m_channel.put(*std::exchange(m_lastDone, std::nullopt));
    }
    tellTransaction();
    Writer out;
    const auto status = static_cast<std::uint16_t>(doneMore | (count ? doneCount : 0) |
                                                   (m_database->inTransaction() ? doneInTransaction : 0));
    out.u8(m_inCall ? tokenDoneInCall : tokenDone).u16(status).u16(0xC1);
    out.u64(static_cast<std::uint64_t>(count.value_or(0)));
    m_lastDone = out.bytes();
}

void Session::note(int number, const std::string& text)
{
    say(tokenNote, {number, 10, text});
}

// A transaction that a statement began or ended, whatever way.
void Session::tellTransaction()
{
    const bool open = m_database && m_database->inTransaction();
    if (open == m_toldTransaction) {
        return;
    }
    m_channel.put(open ? change(8, transactionName, {}) : change(9, {}, transactionName));
    m_toldTransaction = open;
}

void Session::complain(const ServerError& error)
{
    say(tokenError, error);
    tellTransaction();
    m_failed = true;
}

void Session::say(std::uint8_t kind, const ServerError& error)
{
    Writer body;
    body.u32(static_cast<std::uint64_t>(error.number)).u8(1).u8(static_cast<std::uint64_t>(error.severity));
    body.longText(error.text).shortText("zul").shortText("").u32(1);
    Writer token;
    token.u8(kind).u16(body.bytes().size()).raw(body.bytes());
    if (m_lastDone) {
        m_channel.put(*std::exchange(m_lastDone, std::nullopt));
    }
    m_channel.put(token.bytes());
}

void Session::returnHandle(std::int64_t handle)
{
    Writer out;
    out.u8(tokenValue).u16(0).shortText("").u8(1).u32(0).u16(0);
    const DataType type{DataType::Kind::Integer, 4, 10, 0};
    writeType(out, type);
    writeValue(out, type, handle);
    if (m_lastDone) {
        m_channel.put(*std::exchange(m_lastDone, std::nullopt));
    }
    Writer status;
    status.u8(tokenStatus).u32(0);
    m_channel.put(status.bytes());
    m_channel.put(out.bytes());
}

void Session::endOfCall()
{
    if (m_lastDone) {
        m_channel.put(*std::exchange(m_lastDone, std::nullopt));
    }
    Writer out;
    out.u8(tokenDoneCall).u16(m_failed ? doneError : 0).u16(0xE0).u64(0);
    m_lastDone = out.bytes();
}

// The last statement's end says that nothing follows.
void Session::endOfAnswer(std::uint16_t status)
{
    std::string last;
    if (m_lastDone && !m_failed) {
        last = *std::exchange(m_lastDone, std::nullopt);
        last[1] = static_cast<char>(static_cast<std::uint8_t>(last[1]) & ~std::uint8_t{doneMore});
    } else {
        Writer out;
        const auto failed = static_cast<std::uint16_t>(m_failed ? doneError : 0);
        const auto open =
            static_cast<std::uint16_t>(m_database && m_database->inTransaction() ? doneInTransaction : 0);
        out.u8(m_inCall ? tokenDoneCall : tokenDone).u16(status | failed | open).u16(0xC1).u64(0);
        last = out.bytes();
        m_lastDone.reset();
    }
    m_channel.put(last);
}

} // namespace zul::tds
