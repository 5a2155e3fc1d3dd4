#include "controls/notices/MessageSeam.h"

#include "controls/look/CommonLook.h"
#include "controls/look/ScreenRoom.h"

#include <QApplication>
#include <QClipboard>
#include <QGridLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// Longer texts are scrolled: a message box grows past the screen otherwise.
constexpr qsizetype longText = 1500;
constexpr int longTextLines = 25;

Answerer& answerer()
{
    static Answerer installed;
    return installed;
}

QMessageBox::Icon boxIcon(MessageIcon icon)
{
    switch (icon) {
    case MessageIcon::None:
        break;
    case MessageIcon::Information:
        return QMessageBox::Information;
    case MessageIcon::Exclamation:
        return QMessageBox::Warning;
    case MessageIcon::Critical:
        return QMessageBox::Critical;
    case MessageIcon::Question:
        return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

QString iconName(MessageIcon icon)
{
    switch (icon) {
    case MessageIcon::None:
        break;
    case MessageIcon::Information:
        return u"information"_s;
    case MessageIcon::Exclamation:
        return u"exclamation"_s;
    case MessageIcon::Critical:
        return u"critical"_s;
    case MessageIcon::Question:
        return u"question"_s;
    }
    return u"none"_s;
}

bool isLong(const QString& text)
{
    return text.size() > longText || text.count(u'\n') >= longTextLines;
}

/// The keys with which a text is read on.
bool scrollByKey(QScrollBar& bar, int key)
{
    switch (key) {
    case Qt::Key_PageUp:
        bar.triggerAction(QScrollBar::SliderPageStepSub);
        return true;
    case Qt::Key_PageDown:
        bar.triggerAction(QScrollBar::SliderPageStepAdd);
        return true;
    case Qt::Key_Home:
        bar.triggerAction(QScrollBar::SliderToMinimum);
        return true;
    case Qt::Key_End:
        bar.triggerAction(QScrollBar::SliderToMaximum);
        return true;
    default:
        return false;
    }
}

/// Ctrl+C copies the text, also where the platform's own box does not. The box is no larger than the screen has room
/// for: a text that would push the buttons off it is scrolled.
class OperatorBox : public QMessageBox
{
public:
    explicit OperatorBox(QWidget* window);

    bool event(QEvent* event) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void scrollText();

    QSize m_room;
    QScrollArea* m_scroll = nullptr; ///< around a long text
};

OperatorBox::OperatorBox(QWidget* window)
    : QMessageBox(window)
{
    if (window != nullptr) {
        setScreen(window->screen());
    }
    m_room = roomFor(this);
}

bool OperatorBox::event(QEvent* event)
{
    if (event->type() == QEvent::Show && !event->spontaneous() && m_scroll == nullptr) {
        // It takes its size when it is asked to lay itself out.
        QEvent layOut(QEvent::LayoutRequest);
        QMessageBox::event(&layOut);
        if (isLong(text()) || size() != size().boundedTo(m_room)) {
            scrollText();
        }
    }
    return QMessageBox::event(event);
}

void OperatorBox::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy)) {
        QApplication::clipboard()->setText(text());
        event->accept();
        return;
    }
    if (m_scroll != nullptr && scrollByKey(*m_scroll->verticalScrollBar(), event->key())) {
        event->accept();
        return;
    }
    QMessageBox::keyPressEvent(event);
}

void OperatorBox::scrollText()
{
    constexpr QSize Comfortable(480, 320);
    auto* label = findChild<QLabel*>(u"qt_msgbox_label"_s);
    auto* cells = qobject_cast<QGridLayout*>(layout());
    if (label == nullptr || cells == nullptr) {
        return;
    }
    m_scroll = new QScrollArea(this);
    delete cells->replaceWidget(label, m_scroll);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setWidget(label);
    m_scroll->setMinimumSize(1, 1);
    m_scroll->show(); // the layout counts what is shown, and would show it later only
    cells->activate();
    const QSize around = cells->totalMinimumSize() - QSize(1, 1);
    m_scroll->setMinimumSize(Comfortable.boundedTo(m_room - around).expandedTo(QSize(1, 1)));
}

QPushButton* addButton(QMessageBox& box, const QString& caption, const QString& name,
                       QMessageBox::ButtonRole role)
{
    QPushButton* button = box.addButton(caption, role);
    button->setObjectName(name);
    button->setIcon({});
    return button;
}

/// The look's own picture in the place of the platform's, which still tells the box what kind it is of.
void drawIcon(QMessageBox& box, MessageIcon icon)
{
    constexpr int side = 32;
    auto* label = box.findChild<QLabel*>(u"qt_msgboxex_icon_label"_s);
    if (label == nullptr || icon == MessageIcon::None) {
        return;
    }
    const QIcon picture(u":/zul/icons/message-%1.svg"_s.arg(iconName(icon)));
    label->setPixmap(picture.pixmap(QSize(side, side), box.devicePixelRatioF()));
}

} // namespace

Answer ask(QWidget* parent, const OperatorMessage& message)
{
    if (answerer()) {
        return answerer()(message);
    }

    QWidget* window = parent != nullptr ? parent->window() : nullptr;
    const QString title = message.title.isEmpty() ? QString::fromLatin1(ApplicationTitle) : message.title;
    QString text = message.text;
    text.replace(u"\r\n"_s, u"\n"_s);

    OperatorBox box(window);
    box.setObjectName(u"messageBox"_s);
    box.setTextFormat(Qt::PlainText);
    box.setIcon(boxIcon(message.icon));
    box.setWindowTitle(title);
    box.setText(text);
    box.setAccessibleName(title);
    box.setAccessibleDescription(text);
    box.setProperty("zulIcon", iconName(message.icon));
    box.setProperty("zulButtons", message.buttons == MessageButtons::YesNo ? u"yesno"_s : u"ok"_s);
    box.setProperty("zulTitle", title);
    box.setProperty("zulText", message.text);

    QPushButton* first = nullptr;
    QPushButton* last = nullptr;
    if (message.buttons == MessageButtons::YesNo) {
        first = addButton(box, u"Sì"_s, u"yes"_s, QMessageBox::YesRole);
        last = addButton(box, u"No"_s, u"no"_s, QMessageBox::NoRole);
    } else {
        first = addButton(box, u"OK"_s, u"ok"_s, QMessageBox::AcceptRole);
        last = first;
    }
    box.setDefaultButton(first);
    box.setEscapeButton(last);
    setPrimary(first);
    applyCommonLook(&box, window != nullptr && window->property("touch").toBool());
    drawIcon(box, message.icon);
    box.exec();

    if (message.buttons == MessageButtons::Ok) {
        return Answer::Ok;
    }
    return box.clickedButton() == first ? Answer::Yes : Answer::No;
}

void setAnswerer(Answerer newAnswerer)
{
    answerer() = std::move(newAnswerer);
}

} // namespace zul
