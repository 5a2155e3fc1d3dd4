#include "controls/notices/MessageSeam.h"

#include "controls/look/CommonLook.h"

#include <QApplication>
#include <QClipboard>
#include <QGridLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>

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

/// Ctrl+C copies the text, also where the platform's own box does not.
class OperatorBox : public QMessageBox
{
public:
    using QMessageBox::QMessageBox;

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->matches(QKeySequence::Copy)) {
            QApplication::clipboard()->setText(text());
            event->accept();
            return;
        }
        QMessageBox::keyPressEvent(event);
    }
};

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

void scrollLongText(QMessageBox& box, const QString& text)
{
    if (text.size() <= longText && text.count(u'\n') < longTextLines) {
        return;
    }
    auto* label = box.findChild<QLabel*>(u"qt_msgbox_label"_s);
    auto* cells = qobject_cast<QGridLayout*>(box.layout());
    if (label == nullptr || cells == nullptr) {
        return;
    }
    auto* scroll = new QScrollArea(&box);
    delete cells->replaceWidget(label, scroll);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setMinimumSize(480, 320);
    scroll->setWidget(label);
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
    scrollLongText(box, text);
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
