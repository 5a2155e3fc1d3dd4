// The list of outcome lines of a preparation.
#pragma once

#include "grid/OutcomeStore.h"

#include <QListView>
#include <QTimer>

namespace zul {

/// What a line tells, by the tag at its beginning.
enum class OutcomeKind
{
    Success,     // "OK     - "
    Failure,     // "ERRORE - " and "ERR    - "
    Continuation // "       - ", and any other line
};

[[nodiscard]] OutcomeKind outcomeKind(QStringView line);

/// The lines as a list model. Appended lines are announced in batches, so that a list of a million lines can
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

    [[nodiscard]] const OutcomeStore& store() const { return m_store; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    OutcomeStore m_store;
    int m_announced = 0;
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

    QObject* probe(); ///< made at the first call and owned by the list

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
