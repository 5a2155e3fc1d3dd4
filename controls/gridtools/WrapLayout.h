// A row of controls that goes on in the next line where there is no room.
#pragma once

#include <QLabel>
#include <QLayout>

#include <memory>
#include <vector>

namespace zul {

/// Controls beside one another, each as wide as it would like to be, in lines as wide as there is room. What a line has to
/// spare goes to the controls in it that expand, to the first of them as far as that goes. All controls of a line stand on
/// its middle.
class WrapLayout : public QLayout
{
public:
    using QLayout::QLayout;
    ~WrapLayout() override;

    void addItem(QLayoutItem* item) override; ///< takes it over
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize minimumSize() const override; ///< the widest control, in as many lines as that takes
    QSize sizeHint() const override;    ///< one line
    void setGeometry(const QRect& room) override;

private:
    using Line = std::vector<QLayoutItem*>;
    std::vector<Line> linesFor(int width) const;
    std::vector<int> widthsOf(const Line& line, int width) const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

/// A text that takes a second line, beside buttons of that height, before it wants a line of its own.
class FactsLabel : public QLabel
{
    Q_OBJECT

public:
    explicit FactsLabel(QWidget* parent);

    void tell(const QString& text); ///< its tooltip is the same: in the narrowest window not all may be seen

    QSize sizeHint() const override;        ///< as wide as two lines need
    QSize minimumSizeHint() const override; ///< a few words
};

} // namespace zul
