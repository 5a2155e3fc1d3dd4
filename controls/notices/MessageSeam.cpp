#include "controls/notices/MessageSeam.h"

#include "controls/look/CommonLook.h"

#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>

namespace zul {

namespace {

// Longer texts are scrolled: a message box grows past the screen otherwise.
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
        return QStringLiteral("information");
    case MessageIcon::Exclamation:
        return QStringLiteral("exclamation");
    case MessageIcon::Critical:
        return QStringLiteral("critical");
    case MessageIcon::Question:
        return QStringLiteral("question");
    }
    return QStringLiteral("none");
}

QPushButton* addButton(QMessageBox& box, const QString& caption, const QString& name,
                       QMessageBox::ButtonRole role)
{
    QPushButton* button = box.addButton(caption, role);
    button->setObjectName(name);
    button->setIcon({});
    return button;
}

// The look's own picture in the place of the platform's, which still tells the box what kind it is of.
void drawIcon(QMessageBox& box, MessageIcon icon)
{
    constexpr int side = 32;
    auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgboxex_icon_label"));
    if (label == nullptr || icon == MessageIcon::None)
        return;
    const QIcon picture(QStringLiteral(":/zul/icons/message-%1.svg").arg(iconName(icon)));
    label->setPixmap(picture.pixmap(QSize(side, side), box.devicePixelRatioF()));
}

void scrollLongText(QMessageBox& box, const QString& text)
{
    if (text.size() <= longText && text.count(u'\n') < longTextLines)
        return;
    auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    auto* cells = qobject_cast<QGridLayout*>(box.layout());
    if (label == nullptr || cells == nullptr)
        return;
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
    if (answerer())
        return answerer()(message);

    QWidget* window = parent != nullptr ? parent->window() : nullptr;
    const QString title = message.title.isEmpty() ? QString::fromLatin1(ApplicationTitle) : message.title;
    QString text = message.text;
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));

    QMessageBox box(window);
    box.setObjectName(QStringLiteral("messageBox"));
    box.setTextFormat(Qt::PlainText);
    box.setIcon(boxIcon(message.icon));
    box.setWindowTitle(title);
    box.setText(text);
    box.setAccessibleName(title);
    box.setAccessibleDescription(text);
    box.setProperty("zulIcon", iconName(message.icon));
    box.setProperty("zulButtons", message.buttons == MessageButtons::YesNo ? QStringLiteral("yesno")
                                                                           : QStringLiteral("ok"));
    box.setProperty("zulTitle", title);
    box.setProperty("zulText", message.text);

    QPushButton* first = nullptr;
    QPushButton* last = nullptr;
    if (message.buttons == MessageButtons::YesNo) {
        first = addButton(box, QStringLiteral("Sì"), QStringLiteral("yes"), QMessageBox::YesRole);
        last = addButton(box, QStringLiteral("No"), QStringLiteral("no"), QMessageBox::NoRole);
    } else {
        first = addButton(box, QStringLiteral("OK"), QStringLiteral("ok"), QMessageBox::AcceptRole);
        last = first;
    }
    box.setDefaultButton(first);
    box.setEscapeButton(last);
    setPrimary(first);
    applyCommonLook(&box, window != nullptr && window->property("touch").toBool());
    drawIcon(box, message.icon);
    scrollLongText(box, text);
    box.exec();

    if (message.buttons == MessageButtons::Ok)
        return Answer::Ok;
    return box.clickedButton() == first ? Answer::Yes : Answer::No;
}

void setAnswerer(Answerer newAnswerer)
{
    answerer() = std::move(newAnswerer);
}

} // namespace zul
