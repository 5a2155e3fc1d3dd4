// The commands under the result grid.
#pragma once

#include <QObject>
#include <array>

QT_FORWARD_DECLARE_CLASS(QPushButton)

QT_BEGIN_NAMESPACE
namespace Ui {
class frmSMS;
}
QT_END_NAMESPACE

namespace zul {

/// They stand in one row, in two, or one below the other: as many in a row as have their whole captions. They
/// are arranged anew when their panel changes its size, and the panel is kept as high as all that is under the grid needs.
class GridCommands : public QObject
{
    Q_OBJECT

public:
    GridCommands(Ui::frmSMS& ui, QObject* parent);

    void arrange();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::array<QPushButton*, 4> markingCommands() const;
    struct Arrangement;
    static const std::array<Arrangement, 4> arrangements;

    void placeCommands(const Arrangement& arrangement);
    void keepHeight();

    Ui::frmSMS& m_ui;
    const Arrangement* m_arrangement = nullptr; ///< not arranged yet
};

} // namespace zul
