// The host's ear for the component's events.
#pragma once

#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "host/player/GridFillRoutine.h"

#include <Zul_MessageBuilder.h>

namespace zul::host
{
class EventPrinter;

// Answers CaricaGriglia: prints the event and fills the grid. A failure goes back to the component as a failed
// call with a description.
class HostEventSink final : public ComObject<Dispatching<__SmsCreator, HostEventSink>>
{
public:
    // The queries run on the given connection, which is the host's own: they do not stand in the journal. Keeps a
    // reference to the printer.
    HostEventSink(EventPrinter& printer, ComPtr<IConnection> connection);

    HRESULT STDMETHODCALLTYPE CaricaGriglia(IDispatch** grid, BSTR* sql, BSTR* visibility, BSTR* icon, BSTR* mask,
                                            BSTR* sizable, BSTR* button, BSTR* format, BSTR* formatQta,
                                            BSTR* formatColore, _Collection** captions);

private:
    const DispTable<HostEventSink>& dispTable() const override;

    EventPrinter& m_printer;
    ComPtr<IConnection> m_connection;
};
} // namespace zul::host
