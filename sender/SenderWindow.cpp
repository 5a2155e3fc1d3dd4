#include "sender/SenderWindow.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include <exception>

namespace zul::sender {
SenderWindow::SenderWindow(const QString& databaseFile, QWidget* parent)
    : QWidget(parent)
    , m_file(databaseFile)
    , m_status(new QLabel)
{
    setObjectName(QStringLiteral("frmSender"));
    setWindowTitle(QStringLiteral("Gestore invio messaggi"));
    resize(860, 480);

    auto* table = new QTableView;
    table->setObjectName(QStringLiteral("tblCoda"));
    table->setAccessibleName(QStringLiteral("Messaggi in coda"));
    table->setModel(&m_model);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setShowGrid(false);
    table->setWordWrap(false);
    table->setAlternatingRowColors(true);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setHighlightSections(false);
    table->horizontalHeader()->setSectionResizeMode(3, QHeaderView::Stretch);
    const int widths[] = {56, 96, 176, 0, 200, 128};
    for (int column = 0; column < m_model.columnCount(); ++column) {
        if (widths[column] > 0) {
            table->setColumnWidth(column, widths[column]);
        }
    }

    m_status->setObjectName(QStringLiteral("lblStato"));
    m_status->setTextFormat(Qt::PlainText);
    m_status->setWordWrap(true);
    auto* again = new QPushButton(QStringLiteral("Aggiorna"));
    again->setObjectName(QStringLiteral("cmdAggiorna"));
    auto* close = new QPushButton(QStringLiteral("Chiudi"));
    close->setObjectName(QStringLiteral("cmdChiudi"));

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 16);
    column->setSpacing(8);
    column->addWidget(table, 1);
    auto* foot = new QHBoxLayout;
    foot->setSpacing(8);
    foot->addWidget(m_status, 1);
    foot->addWidget(again);
    foot->addWidget(close);
    column->addLayout(foot);

    connect(again, &QPushButton::clicked, this, &SenderWindow::refresh);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    refresh();
}

void SenderWindow::refresh()
{
    if (m_file.isEmpty()) {
        m_status->setText(QStringLiteral("Nessun database SQLite indicato sulla riga di comando."));
        return;
    }
    try {
        m_model.setQueue(readQueue(m_file));
        m_status->setText(QStringLiteral("Messaggi in coda: %1").arg(m_model.rowCount()));
    } catch (const std::exception& error) {
        m_model.setQueue({});
        m_status->setText(QString::fromUtf8(error.what()));
    }
}
} // namespace zul::sender
