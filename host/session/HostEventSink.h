// The host's ear for the component's events.
#pragma once

#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "host/session/GridFillRoutine.h"

#include <Zul_MessageBuilder.h>
#include <functional>

namespace zul::host {
class EventPrinter;

// Answers CaricaGriglia: prints the event and fills the grid. A failure goes back to the component as a failed
// call with a description.
class HostEventSink final : public ComObject<Dispatching<__SmsCreator, HostEventSink>>
{
public:
    // Opens a query on the host's own behalf.
    using OpenRows = std::function<ComPtr<IRecordset>(const QString& sql)>;

    // Keeps a reference to the printer.
    HostEventSink(EventPrinter& printer, OpenRows openRows);

    HRESULT STDMETHODCALLTYPE CaricaGriglia(IDispatch** grid, BSTR* sql, BSTR* visibility, BSTR* icon,
                                            BSTR* mask, BSTR* sizable, BSTR* button, BSTR* format,
                                            BSTR* formatQta, BSTR* formatColore, _Collection** captions);

private:
    const DispTable<HostEventSink>& dispTable() const override;

    EventPrinter& m_printer;
    OpenRows m_openRows;
};
} // namespace zul::host
