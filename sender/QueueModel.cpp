#include "sender/QueueModel.h"

#include <QDateTime>
#include <QLocale>

#include <array>
#include <utility>

namespace zul::sender {
namespace {
constexpr std::array captions{"N.", "Tipo", "Destinatario", "Messaggio", "Campagna", "Creato il"};

// A moment as people here write it; what is none stays as it is.
QString moment(const QString& stored)
{
    const QDateTime read =
        QDateTime::fromString(stored.left(19).replace(QLatin1Char(' '), QLatin1Char('T')), Qt::ISODate);
    return read.isValid() ? QLocale().toString(read, QLocale::ShortFormat) : stored;
}
} // namespace

void QueueModel::setQueue(std::vector<QueuedMessage> queue)
{
    beginResetModel();
    m_queue = std::move(queue);
    endResetModel();
}

int QueueModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_queue.size());
}

int QueueModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(captions.size());
}

QVariant QueueModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    if (role == Qt::TextAlignmentRole && index.column() == 0) {
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) {
        return {};
    }
    const QueuedMessage& message = m_queue[static_cast<std::size_t>(index.row())];
    switch (index.column()) {
    case 0:
        return message.id;
    case 1:
        return message.kind;
    case 2:
        return message.recipient;
    case 3:
        return role == Qt::DisplayRole ? message.text.simplified() : message.text;
    case 4:
        return message.campaign;
    default:
        return moment(message.created);
    }
}

QVariant QueueModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section < columnCount()) {
        return QString::fromUtf8(captions[static_cast<std::size_t>(section)]);
    }
    return QAbstractTableModel::headerData(section, orientation, role);
}
} // namespace zul::sender
