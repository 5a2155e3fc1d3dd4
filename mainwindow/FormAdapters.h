// Ties the creators, which know no widget, to the controls of the main window.
#pragma once

#include "messages/PushNotifications.h"
#include "messages/Recipients.h"
#include "session/IgnoredInput.h"

#include <QElapsedTimer>
#include <vector>

namespace zul {

class OutcomeList;
class ReportGrid;
class WaitIndicator;

/// The rows of a report grid, in the order of the screen at the moment of construction. A filter hides rows from the eye
/// only: what is ticked is a recipient.
class GridRecipients : public Recipients
{
public:
    explicit GridRecipients(ReportGrid& grid);

    int count() const override { return static_cast<int>(m_records.size()); }
    bool isMarked(int row) const override;
    void clearMark(int row) override;
    QString text(int row, int column) const override;
    bool isNumeric(int row, int column) const override;
    qint32 idCliente(int row) const override;

private:
    uint32_t record(int row) const { return m_records[static_cast<std::size_t>(row)]; }

    ReportGrid& m_grid;
    std::vector<uint32_t> m_records;
};

/// The result list. A long run paints it now and then, so that the operator sees it fill; events wait until
/// the run is over.
class ListOutcomes : public Outcomes
{
public:
    explicit ListOutcomes(OutcomeList& list);
    /// Shows the last lines of the run.
    ~ListOutcomes() override;
    ListOutcomes(const ListOutcomes&) = delete;
    ListOutcomes& operator=(const ListOutcomes&) = delete;
    void append(const QString& line) override;

private:
    static constexpr qint64 PaintEveryMilliseconds = 100;

    OutcomeList& m_list;
    QElapsedTimer m_sincePainted;
    qint64 m_untilPaint = PaintEveryMilliseconds;
};

/// The wait indicator of the form. Esc, pressed in the form while it lives, ends the run.
class WaitPleaseProgress : public Progress
{
public:
    explicit WaitPleaseProgress(WaitIndicator& control);
    void GestWaitPlease(bool show, qint32 value, const QString& caption) override;
    bool isEndWanted() override { return m_input.isEscapePressed(); }

private:
    WaitIndicator& m_control;
    IgnoredInput m_input;
};

} // namespace zul
