#include "controls/notices/ProgressWindow.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace zul {

using namespace Qt::StringLiterals;

ProgressWindow::ProgressWindow(QWidget* owner, const QString& caption, int steps)
    : QDialog(owner)
    , m_bar(new QProgressBar(this))
{
    setWindowModality(Qt::WindowModal);
    setWindowTitle(caption);
    auto* label = new QLabel(caption, this);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    m_bar->setRange(0, qMax(steps, 1));
    m_bar->setAccessibleName(u"Avanzamento"_s);
    auto* cancel = new QPushButton(u"Annulla"_s, this);
    cancel->setObjectName(u"cmdAnnulla"_s);
    auto* column = new QVBoxLayout(this);
    column->addWidget(label);
    column->addWidget(m_bar);
    column->addWidget(cancel, 0, Qt::AlignHCenter);
    // Esc and the frame's button reject as well.
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(this, &QDialog::rejected, this, [this] { m_cancelled = true; });
    m_since.start();
}

bool ProgressWindow::advance(int done)
{
    m_bar->setValue(done);
    if (!m_cancelled && !isVisible() && m_since.elapsed() >= untilShown) {
        show();
    }
    if (isVisible()) {
        QCoreApplication::processEvents();
    }
    return !m_cancelled;
}

} // namespace zul
