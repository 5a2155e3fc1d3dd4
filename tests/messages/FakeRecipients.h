// Rows and result list without a grid.
#pragma once

#include "messages/PushNotifications.h"
#include "messages/Recipients.h"
#include "tests/support/ComponentTest.h"

#include <QMap>

namespace zul::test {

/// A row: id, name, mobile number, e-mail.
struct FakeRow
{
    QString id;
    QString name;
    QString telefono2;
    QString email;
    bool marked = true;
};

class FakeRecipients final : public Recipients
{
public:
    std::vector<FakeRow> rows;

    int count() const override { return static_cast<int>(rows.size()); }
    bool isMarked(int row) const override { return at(row).marked; }
    void clearMark(int row) override { rows[static_cast<std::size_t>(row)].marked = false; }
    QString text(int row, int column) const override
    {
        const QMap<int, QString> columns{
            {0, at(row).id}, {2, at(row).name}, {9, at(row).telefono2}, {10, at(row).email}};
        return columns.value(column);
    }
    bool isNumeric(int row, int column) const override
    {
        bool ok = false;
        text(row, column).toDouble(&ok);
        return ok;
    }
    qint32 idCliente(int row) const override { return at(row).id.toInt(); }

    QString marks() const
    {
        QString result;
        for (const FakeRow& row : rows) {
            result += row.marked ? u'x' : u'-';
        }
        return result;
    }

private:
    const FakeRow& at(int row) const { return rows[static_cast<std::size_t>(row)]; }
};

class FakeOutcomes final : public Outcomes
{
public:
    QStringList lines;
    void append(const QString& line) override { lines.append(line); }
};

class FakeProgress final : public Progress
{
public:
    QStringList calls;
    void GestWaitPlease(bool show, qint32 value, const QString& caption) override
    {
        calls.append(QStringLiteral("%1 %2 %3").arg(show).arg(value).arg(caption));
    }
    /// The end is wanted when it is asked for the nth time; 0: never.
    int endsAt = 0;
    bool isEndWanted() override { return ++asked == endsAt; }
    int asked = 0;
};

inline QString separator()
{
    return QStringLiteral("       - ") + QString(100, u'*');
}

} // namespace zul::test
