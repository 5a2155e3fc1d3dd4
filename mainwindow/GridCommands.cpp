#include "mainwindow/GridCommands.h"

#include "mainwindow/Pages.h"
#include "ui_frmSMS.h"

#include <QEvent>
#include <algorithm>
#include <array>

namespace zul {

using namespace Qt::StringLiterals;

/// How many marking commands stand in a row, and whether "Prosegui" stands beside their last row or below.
struct GridCommands::Arrangement
{
    std::size_t columns;
    bool proseguiBeside;
};

/// The best first.
const std::array<GridCommands::Arrangement, 4> GridCommands::arrangements{
    {{4, true}, {2, true}, {2, false}, {1, false}}};

GridCommands::GridCommands(Ui::frmSMS& ui, QObject* parent)
    : QObject(parent)
    , m_ui(ui)
{
    m_ui.gridPanel->installEventFilter(this);
    m_ui.strumentiEsito->setList(m_ui.List_INFO);
    m_ui.strumentiClienti->setGrid(m_ui.grdClienti, {u"cliente"_s, u"clienti"_s});
}

std::array<QPushButton*, 4> GridCommands::markingCommands() const
{
    return {m_ui.cmdSelAll, m_ui.cmdDeSelAll, m_ui.cmdSelezionaEvidenziati, m_ui.Cmd_DeselezionaEvidenziati};
}

void GridCommands::arrange()
{
    const std::array<QPushButton*, 4> commands = markingCommands();
    const QGridLayout* grid = m_ui.gridSelezione;
    const QMargins margins = m_ui.gridPanel->layout()->contentsMargins();
    const int room = m_ui.gridPanel->width() - margins.left() - margins.right();
    const auto widthOf = [&](const Arrangement& arrangement) {
        int width =
            arrangement.proseguiBeside ? m_ui.cmdProsegui1->sizeHint().width() : -grid->horizontalSpacing();
        for (std::size_t column = 0; column < arrangement.columns; ++column) {
            int widest = 0;
            for (std::size_t i = column; i < commands.size(); i += arrangement.columns) {
                widest = std::max(widest, commands[i]->sizeHint().width());
            }
            width += widest + grid->horizontalSpacing();
        }
        return width;
    };
    // Without this the captions of a whole row would be what the splitter cannot go below.
    m_ui.gridPanel->setMinimumWidth(widthOf(arrangements.back()) + margins.left() + margins.right());
    const auto fitting = std::find_if(arrangements.begin(), arrangements.end(),
                                      [&](const Arrangement& one) { return widthOf(one) <= room; });
    const Arrangement& chosen = fitting == arrangements.end() ? arrangements.back() : *fitting;
    if (&chosen != m_arrangement) {
        m_arrangement = &chosen;
        placeCommands(chosen);
    }
    keepHeight();
}

/// Lines that wrap are higher in a narrow panel, which a splitter does not ask: where there is no room the page scrolls.
void GridCommands::keepHeight()
{
    m_ui.gridPanel->setMinimumHeight(
        m_ui.gridPanel->layout()->totalMinimumHeightForWidth(m_ui.gridPanel->width()));
}

void GridCommands::placeCommands(const Arrangement& arrangement)
{
    const std::array<QPushButton*, 4> commands = markingCommands();
    QGridLayout* grid = m_ui.gridSelezione;
    const std::size_t columns = arrangement.columns;
    const int all = grid->columnCount();
    for (std::size_t i = 0; i < commands.size(); ++i) {
        grid->addWidget(commands[i], static_cast<int>(i / columns), static_cast<int>(i % columns), 1,
                        columns > 1 ? 1 : all);
    }
    const int rows = static_cast<int>(commands.size() / columns);
    if (arrangement.proseguiBeside) {
        grid->addWidget(m_ui.cmdProsegui1, rows - 1, all - 1);
    } else {
        grid->addWidget(m_ui.cmdProsegui1, rows, 0, 1, all, Qt::AlignRight);
    }
}

bool GridCommands::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_ui.gridPanel && event->type() == QEvent::Resize) {
        trapped(smsProcedure(u"gridPanel_Resize"_s), [&] { arrange(); });
    }
    if (watched == m_ui.gridPanel && event->type() == QEvent::LayoutRequest) {
        trapped(smsProcedure(u"gridPanel_Resize"_s), [&] { keepHeight(); });
    }
    return QObject::eventFilter(watched, event);
}

} // namespace zul
