// The customer of a host that has no customer object of its own.
#pragma once

#include "automation/ComObject.h"
#include "automation/Dispatch.h"

#include <Zul_Host.h>

#include <QString>

namespace zul::hostlib {

/// Reads the columns of tabClienti. It is an object like the host's own, so that the host's text parser can be
/// handed it.
class StandInCustomer final : public ComObject<Dispatching<ICustomer>>
{
public:
    HRESULT STDMETHODCALLTYPE Init(LONG idCliente, _SqlConnection* connection) override;
    HRESULT STDMETHODCALLTYPE get_Id(LONG* value) override;
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_Email(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_ConsensoSms(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_ConsensoEmail(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_IdClassificazione(LONG* value) override;

private:
    struct Columns
    {
        qint32 id = 0;
        QString name;
        QString email;
        bool consensoSms = false;
        bool consensoEmail = false;
        qint32 idClassificazione = 0;
    };

    const DispTable<ICustomer>& dispTable() const override;

    Columns m_columns;
};

} // namespace zul::hostlib
