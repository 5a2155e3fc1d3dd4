// The life of a modal window.
#pragma once

#include "hostlib/Error.h"

#include <memory>
#include <utility>

namespace zul {

/// A form that is loaded, shown modally and unloaded. While it is on the screen it cannot be destroyed under
/// its own handlers: a discard that comes then closes it and takes effect when it has returned.
///
/// @tparam Form has a default constructor, exec() that returns when the showing has ended, and hide()
template <class Form>
class ModalForm
{
public:
    Form* get() const { return m_form.get(); }
    bool isShown() const { return m_shown; }

    Form& load()
    {
        if (!m_form) {
            m_form = std::make_unique<Form>();
        }
        return *m_form;
    }

    void discard()
    {
        if (m_shown) {
            m_discardLater = true;
            m_form->hide();
            return;
        }
        m_form.reset();
    }

    /// Shows the loaded form. However the showing ends, the form can be shown again.
    /// @throws Error 5 when the form is on the screen already; whatever the showing fails with
    void show()
    {
        refuseWhileShown();
        const Showing showing(*this);
        m_form->exec();
    }

    /// @throws Error 5 when the form is on the screen already
    void refuseWhileShown() const
    {
        if (m_shown) {
            throw Error(RunTime::InvalidCall);
        }
    }

private:
    class Showing
    {
    public:
        explicit Showing(ModalForm& form)
            : m_form(form)
        {
            m_form.m_shown = true;
        }
        ~Showing()
        {
            // Does something only where the showing failed: a modal window left on the screen would hold up all
            // others.
            m_form.m_form->hide();
            m_form.m_shown = false;
            if (std::exchange(m_form.m_discardLater, false)) {
                m_form.m_form.reset();
            }
        }
        Showing(const Showing&) = delete;
        Showing& operator=(const Showing&) = delete;

    private:
        ModalForm& m_form;
    };

    std::unique_ptr<Form> m_form;
    bool m_shown = false;
    bool m_discardLater = false;
};

} // namespace zul
