#pragma once
// A transaction around a few statements of the host's own.
#include "host/database/Engine.h"

namespace zul::host {

/// Begins a transaction, unless one is open already, and rolls back what it began unless it was committed.
class OwnTransaction
{
public:
    explicit OwnTransaction(Engine& engine)
        : m_engine(engine)
        , m_own(!engine.inTransaction())
    {
        if (m_own) {
            engine.begin();
        }
    }
    ~OwnTransaction()
    {
        if (!m_own) {
            return;
        }
        try {
            m_engine.rollback();
        } catch (const EngineError&) {
            // The error on its way out says more.
        }
    }
    OwnTransaction(const OwnTransaction&) = delete;
    OwnTransaction& operator=(const OwnTransaction&) = delete;

    void commit()
    {
        if (m_own) {
            m_engine.commit();
        }
        m_own = false;
    }

private:
    Engine& m_engine;
    bool m_own;
};

} // namespace zul::host
