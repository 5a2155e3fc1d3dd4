#include "hostlib/StandInCustomer.h"

#include "automation/ErrorInfo.h"
#include "hostlib/Ado.h"
#include "hostlib/Calls.h"
#include "hostlib/Host.h"

namespace zul::hostlib {

using namespace Qt::StringLiterals;

namespace {

constexpr const char16_t* Source = u"Zul_MessageBuilder.Customer";

bool flag(const ado::Recordset& row, const QString& field)
{
    return row.integer(field, 0) != 0;
}

template <class T>
HRESULT give(T* place, T value)
{
    if (place == nullptr) {
        return E_POINTER;
    }
    *place = value;
    return S_OK;
}

HRESULT give(BSTR* place, const QString& value)
{
    if (place == nullptr) {
        return E_POINTER;
    }
    *place = nullptr;
    return comGuard(Source, [&] { *place = calls::bstr(value).detach(); });
}

} // namespace

HRESULT StandInCustomer::Init(LONG idCliente, _SqlConnection* connection)
{
    m_columns = {};
    if (connection == nullptr) {
        return E_POINTER;
    }
    return comGuard(Source, [&] {
        try {
            const SqlConnection sqlConnection{ComPtr<_SqlConnection>(connection)};
            ado::Recordset row = sqlConnection.connection().open(
                u"SELECT * FROM tabClienti WHERE IdCliente="_s + QString::number(idCliente),
                ado::Cursor::Static, ado::Lock::ReadOnly);
            if (row.eof()) {
                return;
            }
            Columns read;
            read.id = static_cast<qint32>(idCliente);
            read.name = row.text(u"RagioneSociale1"_s) + u' ' + row.text(u"RagioneSociale2"_s);
            read.email = row.text(u"email"_s);
            read.consensoSms = flag(row, u"ConsensoSms"_s);
            read.consensoEmail = flag(row, u"ConsensoEmail"_s);
            read.idClassificazione = row.integer(u"idClassificazione"_s, 0);
            m_columns = read;
        } catch (const Error& error) {
            throw calls::comError(error);
        }
    });
}

HRESULT StandInCustomer::get_Id(LONG* value)
{
    return give(value, LONG{m_columns.id});
}

HRESULT StandInCustomer::get_Name(BSTR* value)
{
    return give(value, m_columns.name);
}

HRESULT StandInCustomer::get_Email(BSTR* value)
{
    return give(value, m_columns.email);
}

HRESULT StandInCustomer::get_ConsensoSms(VARIANT_BOOL* value)
{
    return give(value, calls::toBool(m_columns.consensoSms));
}

HRESULT StandInCustomer::get_ConsensoEmail(VARIANT_BOOL* value)
{
    return give(value, calls::toBool(m_columns.consensoEmail));
}

HRESULT StandInCustomer::get_IdClassificazione(LONG* value)
{
    return give(value, LONG{m_columns.idClassificazione});
}

const DispTable<ICustomer>& StandInCustomer::dispTable() const
{
    using namespace dispatch;
    static const DispTable<ICustomer> table{
        method("Init", 1, &ICustomer::Init, {"idCliente", "connection"}),
        propget("Id", 2, &ICustomer::get_Id),
        propget("Name", 3, &ICustomer::get_Name),
        propget("Email", 4, &ICustomer::get_Email),
        propget("ConsensoSms", 5, &ICustomer::get_ConsensoSms),
        propget("ConsensoEmail", 6, &ICustomer::get_ConsensoEmail),
        propget("IdClassificazione", 7, &ICustomer::get_IdClassificazione),
    };
    return table;
}

} // namespace zul::hostlib
