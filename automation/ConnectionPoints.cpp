#include "automation/ConnectionPoints.h"

#include "automation/Enumerator.h"

#include <algorithm>
#include <new>

#include <olectl.h>

namespace zul {

namespace {

struct AdvisedSink
{
    DWORD cookie;
    ComPtr<IUnknown> sink;
};

HRESULT handOutPoint(const ComPtr<IConnectionPoint>& point, IConnectionPoint*& raw)
{
    return point.copyTo(&raw);
}
HRESULT handOutSink(const AdvisedSink& advised, CONNECTDATA& raw)
{
    raw.dwCookie = advised.cookie;
    return advised.sink.copyTo(&raw.pUnk);
}

using PointEnumerator =
    Enumerator<IEnumConnectionPoints, ComPtr<IConnectionPoint>, IConnectionPoint*, handOutPoint>;
using SinkEnumerator = Enumerator<IEnumConnections, AdvisedSink, CONNECTDATA, handOutSink>;

} // namespace

ConnectionPoint::ConnectionPoint(const IID& iid, IConnectionPointContainer& container)
    : m_iid(iid)
    , m_container(&container)
{}

HRESULT ConnectionPoint::GetConnectionInterface(IID* iid)
{
    if (iid == nullptr) {
        return E_POINTER;
    }
    *iid = m_iid;
    return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container)
{
    if (container == nullptr) {
        return E_POINTER;
    }
    *container = nullptr;
    if (m_container == nullptr) {
        return E_UNEXPECTED;
    }
    return ComPtr<IConnectionPointContainer>(m_container).copyTo(container);
}

HRESULT ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie)
{
    if (cookie == nullptr) {
        return E_POINTER;
    }
    *cookie = 0;
    if (sink == nullptr) {
        return E_POINTER;
    }
    if (m_container == nullptr) {
        return CONNECT_E_CANNOTCONNECT;
    }
    // A sink that is late bound in every way answers IDispatch only.
    ComPtr<IDispatch> dispatch;
    if (FAILED(sink->QueryInterface(m_iid, dispatch.putVoid()))) {
        dispatch.detach();
        dispatch = queryFor<IDispatch>(sink);
    }
    if (!dispatch) {
        return CONNECT_E_CANNOTCONNECT;
    }
    try {
        m_connections.push_back({m_lastCookie + 1, std::move(dispatch)});
    } catch (...) {
        return E_OUTOFMEMORY;
    }
    *cookie = ++m_lastCookie;
    return S_OK;
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie)
{
    const auto found = std::find_if(m_connections.begin(), m_connections.end(),
                                    [&](const Connection& c) { return c.cookie == cookie; });
    if (found == m_connections.end()) {
        return CONNECT_E_NOCONNECTION;
    }
    // Let go only when the list is whole again: the release may run the sink's own code.
    const ComPtr<IDispatch> sink = std::move(found->sink);
    m_connections.erase(found);
    return S_OK;
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** enumerator)
{
    if (enumerator == nullptr) {
        return E_POINTER;
    }
    *enumerator = nullptr;
    try {
        std::vector<AdvisedSink> sinks;
        for (const Connection& connection : m_connections) {
            sinks.push_back({connection.cookie, connection.sink});
        }
        *enumerator = makeCom<SinkEnumerator>(std::move(sinks)).detach();
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

bool ConnectionPoint::isAdvised(DWORD cookie) const noexcept
{
    return std::any_of(m_connections.begin(), m_connections.end(),
                       [&](const Connection& c) { return c.cookie == cookie; });
}

std::size_t ConnectionPoint::fire(DISPID event, std::span<const Variant> arguments,
                                  const OnFailure& onFailure)
{
    const ComPtr<ConnectionPoint> alive(this);
    const std::vector<Connection> snapshot = m_connections;
    std::size_t failures = 0;
    for (const Connection& connection : snapshot) {
        if (!isAdvised(connection.cookie)) {
            continue;
        }
        // Made anew for each sink, so that none sees what another did to the list itself.
        std::vector<VARIANTARG> reversed(arguments.rbegin(), arguments.rend());
        DISPPARAMS params{};
        params.rgvarg = reversed.empty() ? nullptr : reversed.data();
        params.cArgs = static_cast<UINT>(reversed.size());
        Variant result;
        EXCEPINFO exception{};
        UINT argErr = 0;
        SetErrorInfo(0, nullptr);
        HRESULT outcome = S_OK;
        try {
            outcome = connection.sink->Invoke(event, GUID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params,
                                              &result, &exception, &argErr);
        } catch (...) {
            outcome = reportCurrentException(); // no sink should; one must not take the others with it
        }
        if (FAILED(outcome)) {
            ++failures;
            const ErrorDetails details = takeErrorDetails(outcome, exception);
            if (onFailure) {
                onFailure(connection.cookie, details);
            }
        }
    }
    return failures;
}

void ConnectionPoint::disconnect() noexcept
{
    m_container = nullptr;
    std::vector<Connection> connections;
    connections.swap(m_connections);
}

ConnectionPointContainer::~ConnectionPointContainer()
{
    for (const ComPtr<ConnectionPoint>& point : m_points) {
        point->disconnect();
    }
}

HRESULT ConnectionPointContainer::EnumConnectionPoints(IEnumConnectionPoints** enumerator)
{
    if (enumerator == nullptr) {
        return E_POINTER;
    }
    *enumerator = nullptr;
    try {
        std::vector<ComPtr<IConnectionPoint>> points(m_points.begin(), m_points.end());
        *enumerator = makeCom<PointEnumerator>(std::move(points)).detach();
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT ConnectionPointContainer::FindConnectionPoint(REFIID iid, IConnectionPoint** point)
{
    if (point == nullptr) {
        return E_POINTER;
    }
    *point = nullptr;
    for (const ComPtr<ConnectionPoint>& candidate : m_points) {
        if (candidate->iid() == iid) {
            return ComPtr<IConnectionPoint>(candidate).copyTo(point);
        }
    }
    return CONNECT_E_NOCONNECTION;
}

ComPtr<ConnectionPoint> ConnectionPointContainer::addConnectionPoint(const IID& iid)
{
    m_points.push_back(makeCom<ConnectionPoint>(iid, *this));
    return m_points.back();
}

} // namespace zul
