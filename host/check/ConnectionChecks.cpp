// The connection object by itself: what it hands out, which interfaces it has, how it counts.
#include "host/check/Checks.h"
#include "host/check/Verdict.h"

#include <optional>
#include <vector>

namespace zul::host::check {

namespace {

/// Nobody has it: made for this question.
constexpr IID unknownIid{0x7a1f9d52, 0x3c44, 0x4e0b, {0x9f, 0x2e, 0x51, 0x0c, 0x7d, 0x18, 0x66, 0xa3}};

/// The references to an object; nothing where its AddRef and Release do not tell.
std::optional<ULONG> references(IUnknown* object)
{
    const ULONG more = object->AddRef();
    const ULONG left = object->Release();
    return more == left + 1 ? std::optional(left) : std::nullopt;
}

void requireInterfaces(IUnknown* object, const IID& own, const std::string& what)
{
    void* found = &found;
    const HRESULT result = object->QueryInterface(unknownIid, &found);
    if (SUCCEEDED(result)) {
        // Not released: nobody knows what it is.
        throw Breach(
            what + " answers to an interface that nobody has",
            "takes it for its fast path and its services, calls functions that are not there, and may end "
            "the process");
    }
    if (result != E_NOINTERFACE) {
        throw Breach(what + " refuses an unknown interface with " + Failure{result, {}}.text() +
                         " instead of E_NOINTERFACE (0x80004002)",
                     "passes it over");
    }
    if (found != nullptr) {
        throw Breach(what + " refuses an unknown interface and leaves something other than null",
                     "passes it over; other callers would release it");
    }
    IUnknown* identity = nullptr;
    for (const IID& iid : {iidOf<IUnknown>(), iidOf<IDispatch>(), own}) {
        ComPtr<IUnknown> same;
        const HRESULT answer = object->QueryInterface(iid, same.putVoid());
        if (FAILED(answer)) {
            same.detach();
        }
        if (!same) {
            throw Breach(what + " does not answer to " +
                             (iid == own                  ? "its own interface"
                              : iid == iidOf<IDispatch>() ? "IDispatch"
                                                          : "IUnknown"),
                         "keeps the pointer that it was given, and works; script hosts and proxies do not");
        }
        ComPtr<IUnknown> unknown;
        if (FAILED(same->QueryInterface(iidOf<IUnknown>(), unknown.putVoid())) || !unknown) {
            unknown.detach();
            throw Breach(what + " has an interface that does not answer to IUnknown", "does not ask for it");
        }
        if (identity != nullptr && identity != unknown.get()) {
            throw Breach(what + " gives another IUnknown by each interface", "does not compare objects");
        }
        identity = unknown.get();
    }
}

void checkConnection(Subject& subject)
{
    subject.connect();
}

void checkUserName(Subject& subject)
{
    Bstr name;
    mustSucceed(subject.object()->get_UserName(name.put()), "UserName");
    if (name.isEmpty()) {
        throw StandIn("empty; rows are written with an empty user name");
    }
}

void checkConnectionString(Subject& subject)
{
    Bstr text;
    mustSucceed(subject.connection()->get_ConnectionString(text.put()), "ConnectionString");
    if (text.isEmpty()) {
        throw StandIn("empty; the program that delivers is started without one");
    }
}

void checkObjectInterfaces(Subject& subject)
{
    requireInterfaces(subject.object(), iidOf<_SqlConnection>(), "the connection object");
}

void checkConnectionInterfaces(Subject& subject)
{
    requireInterfaces(subject.connection(), iidOf<IConnection>(), "the connection");
}

void checkRowSetInterfaces(Subject& subject)
{
    const Rows rows = subject.open(u"SELECT 1 AS uno");
    requireInterfaces(rows.object(), iidOf<IRecordset>(), "a row set");
}

void checkHandedOut(Subject& subject)
{
    IConnection* const held = subject.connection();
    const auto before = references(held);
    if (!before) {
        throw Skipped("AddRef and Release do not tell how many there are");
    }
    IConnection* another = nullptr;
    mustSucceed(subject.object()->get_Connection(&another), "Connection");
    if (another != held) {
        if (another != nullptr) {
            another->Release();
        }
        return; // an object for each asker
    }
    const auto after = references(held);
    if (after && *after == *before) {
        // Makes up for this one and for the one that is held.
        held->AddRef();
        throw Breach("Connection hands the connection out without a reference for the caller",
                     "gives back a reference that is not its own: the connection is gone while it is used");
    }
    another->Release();
    if (references(held) != before) {
        throw Breach("a connection that was handed out and given back counts otherwise than before",
                     "keeps it alive for ever");
    }
}

/// Writes over the memory that was freed last, in blocks of every size that an object may have: what still points there
/// points nowhere.
void overwriteFreedMemory()
{
    constexpr std::size_t largest = 4096;
    constexpr int ofEach = 8;
    std::vector<std::string> blocks;
    for (std::size_t size = 32; size <= largest; size += 16) {
        for (int i = 0; i < ofEach; ++i) {
            blocks.emplace_back(size - 9, 'Z'); // with its end and the allocator's head a block of the size
        }
    }
}

/// A reference more that is given back leaves the others. An object that goes all the same ends the process here, where it
/// is told of, and not in the middle of a search.
void checkKept(Subject& subject)
{
    const Rows rows = subject.open(u"SELECT 1 AS uno");
    for (IUnknown* object :
         {static_cast<IUnknown*>(rows.object()), static_cast<IUnknown*>(subject.connection()),
          static_cast<IUnknown*>(subject.object())}) {
        object->AddRef();
        object->Release();
        overwriteFreedMemory();
        object->AddRef();
        object->Release();
    }
    if (rows.atEnd()) {
        throw Breach("a row set is at its end when a reference to it is given back", "shows no rows");
    }
}

void checkLeaks(Subject& subject)
{
    constexpr int rounds = 50;
    const auto object = references(subject.object());
    const auto connection = references(subject.connection());
    if (!object || !connection) {
        throw Skipped("AddRef and Release do not tell how many there are");
    }
    for (int i = 0; i < rounds; ++i) {
        IRecordset* rows = nullptr;
        mustSucceed(subject.connection()->OpenRecordset(Bstr(u"SELECT 1 AS uno").get(), CursorStatic,
                                                        LockReadOnly, &rows),
                    "OpenRecordset");
        if (rows == nullptr) {
            throw Breach("OpenRecordset succeeds and gives null", "ends the operator's command");
        }
        rows->Close();
        const ULONG left = rows->Release();
        if (left != 0) {
            throw Breach("a row set that was closed and given back is held by " + std::to_string(left) +
                             " more references",
                         "cannot free it: every search takes memory for ever");
        }
        ComPtr<IUnknown> unknown;
        mustSucceed(subject.object()->QueryInterface(iidOf<IUnknown>(), unknown.putVoid()),
                    "QueryInterface(IUnknown)");
    }
    if (references(subject.object()) != object) {
        throw Breach("the connection object has other references than before " + std::to_string(rounds) +
                         " row sets and queries of interfaces",
                     "keeps it alive for ever, or loses it while it is used");
    }
    if (references(subject.connection()) != connection) {
        throw Breach("the connection has other references than before " + std::to_string(rounds) +
                         " row sets",
                     "keeps it alive for ever, or loses it while it is used");
    }
}

} // namespace

void addConnectionChecks(std::vector<Check>& checks)
{
    checks.push_back({connectionCheck, {}, checkConnection});
    checks.push_back({"user name", {}, checkUserName});
    checks.push_back({"connection string", connectionCheck, checkConnectionString});
    checks.push_back({interfacesCheck, {}, checkObjectInterfaces});
    checks.push_back({"interfaces: the connection's", connectionCheck, checkConnectionInterfaces});
    checks.push_back({"references: what is handed out has its own", connectionCheck, checkHandedOut});
}

void addRowSetLifeChecks(std::vector<Check>& checks)
{
    checks.push_back({keptCheck, movesCheck, checkKept});
    checks.push_back({rowInterfacesCheck, movesCheck, checkRowSetInterfaces});
    checks.push_back({"references: none is left behind", movesCheck, checkLeaks});
}

} // namespace zul::host::check
