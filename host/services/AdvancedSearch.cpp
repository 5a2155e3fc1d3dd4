#include "automation/Bstr.h"
#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "host/services/FrmRicercaAvanzata.h"
#include "host/services/Services.h"

#include <QApplication>
#include <QWindow>

namespace zul::host {

namespace {

class AdvancedSearch final : public ComObject<Dispatching<IAdvancedSearch>>
{
public:
    // The search is over the columns of tabClienti and needs nothing from the database itself.
    HRESULT STDMETHODCALLTYPE put_Connection(_SqlConnection*) override { return S_OK; }

    // Every kind of search is the one over customers.
    HRESULT STDMETHODCALLTYPE Search(LONG, BSTR* filter) override
    {
        if (filter == nullptr) {
            return E_POINTER;
        }
        *filter = nullptr;
        const ComPtr<IAdvancedSearch> alive(this);
        return hostGuard(u"Zul_Host.AdvancedSearch", [&] {
            if (!m_form) {
                m_form = std::make_unique<FrmRicercaAvanzata>();
            }
            // Above the window that asked, without belonging to it: the form outlives it.
            QWidget* const asking = QApplication::activeModalWidget() != nullptr
                                        ? QApplication::activeModalWidget()
                                        : QApplication::activeWindow();
            m_form->winId();
            if (asking != nullptr && asking->window()->windowHandle() != nullptr) {
                m_form->windowHandle()->setTransientParent(asking->window()->windowHandle());
            }
            const QString sql = m_form->exec() == QDialog::Accepted ? m_form->sql() : QString();
            *filter = Bstr(sql.toStdU16String()).detach();
        });
    }

private:
    const DispTable<IAdvancedSearch>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const DispTable<IAdvancedSearch> table{
            propput("Connection", 1, &IAdvancedSearch::put_Connection, {"value"}),
            method("Search", 2, &IAdvancedSearch::Search, {"kind"}),
        };
        return table;
    }

    std::unique_ptr<FrmRicercaAvanzata> m_form;
};

} // namespace

ComPtr<IAdvancedSearch> makeAdvancedSearch()
{
    return makeCom<AdvancedSearch>();
}

} // namespace zul::host
