// Events: an object that sinks can be advised to, and the firing of an event to all of them.
//
//   class SmsCreator : public ComObject<Dispatching<_SmsCreator>, ConnectionPointContainer> {
//       SmsCreator() { m_events = addConnectionPoint(DIID___SmsCreator); }
//       … m_events->fire(1, arguments, onFailure);
#pragma once

#include <functional>
#include <span>
#include <vector>

#include <ocidl.h>

#include "automation/ComObject.h"
#include "automation/ErrorInfo.h"
#include "automation/Variant.h"

namespace zul {

// The sinks of one event interface. It may outlive its object; it then has no container and no sinks.
class ConnectionPoint final : public ComObject<IConnectionPoint>
{
public:
    // Called for a sink that fails, with what the sink said.
    using OnFailure = std::function<void(DWORD cookie, const ErrorDetails& details)>;

    ConnectionPoint(const IID& iid, IConnectionPointContainer& container);

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override;
    // CONNECT_E_CANNOTCONNECT for a sink that answers neither the event interface nor IDispatch.
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** enumerator) override;

    // Raises the event at every sink that is advised when this is called, in the order of advice; a sink that
    // is unadvised before its turn is left out. Arguments stand in declared order; each sink gets the variants
    // as they are, so references lead to the same storage for all. What a sink does wrong reaches onFailure
    // (which may be empty) and no other sink. Gives the number of sinks that failed.
    std::size_t fire(DISPID event, std::span<const Variant> arguments, const OnFailure& onFailure = {});

    const IID& iid() const noexcept { return m_iid; }
    // The container goes: no more sinks, no way back.
    void disconnect() noexcept;

private:
    struct Connection
    {
        DWORD cookie;
        ComPtr<IDispatch> sink;
    };
    bool isAdvised(DWORD cookie) const noexcept;

    IID m_iid;
    IConnectionPointContainer* m_container; // not owned: it owns this
    DWORD m_lastCookie = 0;
    std::vector<Connection> m_connections;
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// Implements IConnectionPointContainer as a base of a ComObject.
class ConnectionPointContainer : public IConnectionPointContainer
{
public:
    using ComInterface = IConnectionPointContainer;

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** enumerator) override;
    // CONNECT_E_NOCONNECTION for an interface that is no event source of the object.
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

protected:
    ConnectionPointContainer() = default;
    ConnectionPointContainer(const ConnectionPointContainer&) = delete;
    ConnectionPointContainer& operator=(const ConnectionPointContainer&) = delete;
    ~ConnectionPointContainer();

    ComPtr<ConnectionPoint> addConnectionPoint(const IID& iid);

private:
    std::vector<ComPtr<ConnectionPoint>> m_points;
};

#pragma GCC diagnostic pop

} // namespace zul
