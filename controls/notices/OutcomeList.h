// The list of outcome lines of a preparation.
#pragma once

#include "grid/OutcomeStore.h"
#include "grid/OutcomeTotals.h"

#include <QListView>
#include <QTimer>

#include <vector>

namespace zul {

/// The lines as a list model, or the failures among them. Appended lines are announced in batches, so that a list of a million lines can
/// be filled while it is shown.
class OutcomeModel : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit OutcomeModel(QObject* parent = nullptr);

    void append(QStringView line);
    void clear();
    /// Announces what was appended, at once.
    void announce();

    /// From now on the rows are the failures alone, or all lines again.
    void setOnlyFailures(bool only);

    [[nodiscard]] const OutcomeStore& store() const { return m_store; } ///< all lines
    [[nodiscard]] const OutcomeTotals& totals() const { return m_totals; }
    /// The line of a row.
    [[nodiscard]] QString rowText(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

Q_SIGNALS:
    void linesCame(); ///< also when none of them is a row

private:
    [[nodiscard]] int rows() const
    {
        return m_onlyFailures ? static_cast<int>(m_failures.size()) : m_store.count();
    }

    OutcomeStore m_store;
    OutcomeTotals m_totals;
    std::vector<int> m_failures; // their numbers among the lines
    bool m_onlyFailures = false;
    int m_announced = 0; // rows
    QTimer m_timer;
};

/// A list of text lines, the tags coloured by kind. Ctrl+C copies the selected lines.
class OutcomeList : public QListView
{
    Q_OBJECT
    /// A program that drives the window without linking it asks here, see OutcomeListProbe.
    Q_PROPERTY(QObject* probe READ probe)

public:
    explicit OutcomeList(QWidget* parent = nullptr);

    void append(const QString& line);
    void clear();

    [[nodiscard]] int count() const { return m_model->store().count(); }
    /// Empty for an index out of range; the first line is 0.
    [[nodiscard]] QString line(int index) const { return m_model->store().line(index); }

    /// Shows what was appended so far without waiting for the next batch.
    void flush() { m_model->announce(); }

    void copySelected() const;
    /// The highlighted lines go to the clipboard, or all that are shown when none is.
    void copyLines() const;
    /// Leaves out all lines but failures, from the eye only.
    void setOnlyFailures(bool only);
    [[nodiscard]] QStringList shownLines() const;
    /// How the lines add up, see OutcomeTotals.
    [[nodiscard]] QString totals() const;

    QObject* probe(); ///< made at the first call and owned by the list

Q_SIGNALS:
    /// Lines came that were announced, whether they are shown or not.
    void linesCame();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void fitCells();

    OutcomeModel* m_model;
    QObject* m_probe = nullptr;
    bool m_following = true; // the list stands at its end and stays there while it grows
};

} // namespace zul
