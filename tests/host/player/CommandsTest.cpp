// What each command does to a window, and what it says when it cannot be done.
#include "tests/host/player/PlayedSession.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace {

using namespace Qt::StringLiterals;
using zul::host::test::Outcome;
using zul::host::test::play;
using zul::host::test::ScriptedHost;

template <typename Widget, typename... Arguments>
Widget* named(const char* name, Arguments&&... arguments)
{
    auto* widget = new Widget(std::forward<Arguments>(arguments)...);
    widget->setObjectName(QLatin1String(name));
    return widget;
}

/// Writes down what the mouse does to it.
class Corner : public QWidget
{
    Q_OBJECT

public:
    explicit Corner(QStringList& log)
        : m_log(log)
    {}

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        m_log.append(u"%1 %2,%3"_s.arg(event->button() == Qt::RightButton ? u"right"_s : u"left"_s)
                         .arg(event->pos().x())
                         .arg(event->pos().y()));
    }
    void mouseDoubleClickEvent(QMouseEvent* event) override
    {
        m_log.append(u"double %1,%2"_s.arg(event->pos().x()).arg(event->pos().y()));
    }
    void wheelEvent(QWheelEvent* event) override { m_log.append(u"wheel %1"_s.arg(event->angleDelta().y())); }

private:
    QStringList& m_log;
};

/// A field made of parts, as the shared selector field is: text box, choose and clear button.
class Selector : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int selectedId MEMBER m_id)
    Q_PROPERTY(QString text READ text)

public:
    Selector()
        : m_text(named<QLineEdit>("textBox"))
    {
        setObjectName(u"cntrMessaggio(0)"_s);
        auto* row = new QHBoxLayout(this);
        auto* choose = named<QToolButton>("chooseButton");
        auto* clear = named<QToolButton>("clearButton");
        row->addWidget(m_text);
        row->addWidget(choose);
        row->addWidget(clear);
        setFocusProxy(m_text);
        connect(choose, &QToolButton::clicked, this, [this] {
            m_id = 7;
            m_text->setText(u"D'Amico \"50%\""_s);
        });
        connect(clear, &QToolButton::clicked, this, [this] {
            m_id = -1;
            m_text->clear();
        });
    }
    QString text() const { return m_text->text(); }

private:
    int m_id = -1;
    QLineEdit* m_text;
};

/// Lists as the shared outcome list does, and a folder tree.
class OutcomesProbe : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    Q_INVOKABLE int lineCount() const { return 2; }
    Q_INVOKABLE QString lineText(int index) const
    {
        return index == 0 ? u"       - ***"_s : u"OK     - Rossi \"M\" 😀"_s;
    }
};

class Outcomes : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QObject* probe READ probe)

public:
    QObject* probe() { return &m_probe; }

private:
    OutcomesProbe m_probe;
};

class Folders : public QWidget
{
    Q_OBJECT

public:
    QString selected;
    Q_INVOKABLE bool selectPath(const QString& path)
    {
        if (path != u"C:\\Sender"_s) {
            return false;
        }
        selected = path;
        return true;
    }
};

/// One window with every kind of control.
class Form : public QDialog
{
    Q_OBJECT

public:
    QLineEdit* field = named<QLineEdit>("txtANA_Eta_I");
    QPlainTextEdit* memo = named<QPlainTextEdit>("txtTestoMessaggio(0)");
    QCheckBox* check = named<QCheckBox>("chkANA_Eta", u"&Età && oltre"_s);
    QRadioButton* one = named<QRadioButton>("RBN_SoloSMS", u"Invia solo SMS"_s);
    QRadioButton* two = named<QRadioButton>("RBN_SoloEMAIL", u"Invia solo EMAIL"_s);
    QPushButton* button = named<QPushButton>("cmdElabora", u"Ricerca"_s);
    QComboBox* list = named<QComboBox>("cbbPeriodo");
    QTabWidget* tabs = named<QTabWidget>("tab_Invio");
    Folders* folders = named<Folders>("FolderTreeview1");
    QStringList log;

    Form()
    {
        setObjectName(u"frmSMS"_s);
        setWindowTitle(u"Zul_MessageBuilder"_s);
        auto* column = new QVBoxLayout(this);
        column->addWidget(field);
        column->addWidget(memo);
        column->addWidget(check);
        column->addWidget(one);
        column->addWidget(two);
        column->addWidget(button);
        column->addWidget(list);
        column->addWidget(new Selector);
        column->addWidget(folders);
        column->addWidget(named<Outcomes>("List_INFO"));
        column->addWidget(tabs);
        folders->setMinimumHeight(10);
        list->addItems({u"(nessuno)"_s, u"Ultimo mese"_s, u"Ultimo anno"_s});
        for (const char* page : {"Ricerca destinatari", "Tipo di invio", "Prepara per invio"}) {
            auto* sheet = new QWidget;
            auto* inside = new QVBoxLayout(sheet);
            inside->addWidget(named<QLabel>(page, QLatin1String(page)));
            tabs->addTab(sheet, QLatin1String(page));
        }
        tabs->setTabVisible(2, false);
        field->installEventFilter(this);
        connect(button, &QPushButton::clicked, this, [this] { log.append(u"click"_s); });
        connect(list, &QComboBox::activated, this,
                [this](int index) { log.append(u"activated %1"_s.arg(index)); });
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress) {
            log.append(u"field key %1"_s.arg(static_cast<QKeyEvent*>(event)->key()));
        } else if (event->type() == QEvent::FocusIn) {
            field->setProperty("background", QColor(Qt::yellow));
        } else if (event->type() == QEvent::FocusOut) {
            field->setProperty("background", QColor(Qt::white));
        }
        return QDialog::eventFilter(watched, event);
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        log.append(u"form key %1"_s.arg(event->key()));
        event->accept();
    }
};

class Commands : public ::testing::Test
{
protected:
    ScriptedHost host;
    std::function<void(Form&)> prepare = [](Form&) {};
    std::function<void(Form&)> inspect = [](Form&) {};

    void SetUp() override
    {
        host.opens(u"show"_s, [this] {
            Form form;
            prepare(form);
            form.exec();
            inspect(form);
        });
    }

    // The lines between the window's own.
    QStringList playInForm(const std::string& script)
    {
        const Outcome outcome = play(host, "call show\n" + script);
        EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
        EXPECT_GE(outcome.lines.size(), 3) << outcome.text();
        return outcome.lines.mid(1, outcome.lines.size() - 3);
    }

    // Why a command of the form is refused.
    QString refusal(const std::string& command)
    {
        const Outcome outcome = play(host, "call show\n" + command + "\ncall show\n");
        EXPECT_EQ(outcome.result, 2) << command;
        EXPECT_EQ(outcome.lines.last(), u"return show empty"_s) << command;
        EXPECT_EQ(outcome.lines.count(u"return show empty"_s), 1) << command;
        EXPECT_EQ(outcome.errors.size(), 1) << command;
        const QString error = outcome.errors.value(0);
        EXPECT_TRUE(error.startsWith(u"line 2: "_s)) << error.toStdString();
        return error.mid(8);
    }
};

TEST_F(Commands, ClickPressesButtonsAndTicksBoxes)
{
    inspect = [](Form& form) { EXPECT_EQ(form.log, QStringList{"click"}); };
    const QStringList lines = playInForm("click cmdElabora\n"
                                         "click chkANA_Eta\nprint chkANA_Eta\n"
                                         "click chkANA_Eta\nprint chkANA_Eta\n"
                                         "click RBN_SoloEMAIL\nprint RBN_SoloEMAIL\nprint RBN_SoloSMS\n");
    ASSERT_EQ(lines.size(), 4);
    EXPECT_TRUE(lines[0].startsWith(
        "control chkANA_Eta visible=1 enabled=1 value=1 text=\"Età & oltre\" background=#"))
        << lines[0].toStdString();
    EXPECT_TRUE(lines[1].contains(" value=0 ")) << lines[1].toStdString();
    EXPECT_TRUE(lines[2].contains(" value=1 text=\"Invia solo EMAIL\"")) << lines[2].toStdString();
    EXPECT_TRUE(lines[3].contains(" value=0 ")) << lines[3].toStdString();
}

TEST_F(Commands, TwoClicksInARowAreNoDoubleClick)
{
    inspect = [](Form& form) { EXPECT_EQ(form.log, (QStringList{"click", "click"})); };
    playInForm("click cmdElabora\nclick cmdElabora\n");
}

TEST_F(Commands, AtAndWheelGoToWhateverIsAtAPoint)
{
    prepare = [](Form& form) {
        auto* corner = new Corner(form.log);
        corner->setParent(&form);
        corner->setGeometry(0, 0, 40, 30);
        corner->raise();
    };
    inspect = [](Form& form) {
        EXPECT_EQ(form.log, (QStringList{"left 3,4", "right 39,29", "left 0,0", "double 0,0", "wheel 120",
                                         "wheel 120", "wheel -120"}));
    };
    playInForm("at 3 4\nat 39 29 right\nat 0 0 double\nwheel 5 5 2\nwheel 5 5 -1\nwheel 100 100 3\n");
    inspect = [](Form&) {};
    EXPECT_TRUE(refusal("at 100000 0").startsWith(u"the window ends at "_s));
    EXPECT_EQ(refusal("at 1 1 left"), u"\"left\" is neither right nor double"_s);
    EXPECT_EQ(refusal("wheel 1 1 0"), u"0 is no number of steps"_s);
    EXPECT_EQ(refusal("wheel 1 1 101"), u"101 is no number of steps"_s);
}

TEST_F(Commands, TypeReplacesTheTextWithWhatAPersonWouldType)
{
    const std::string text = "D'Amico \\\"50%\\\" à è € 😀 C:\\\\x";
    prepare = [](Form& form) { form.field->setText(u"earlier"_s); };
    const QStringList lines = playInForm("type txtANA_Eta_I \"" + text +
                                         "\"\nprint txtANA_Eta_I\n"
                                         "type txtANA_Eta_I \"\"\nprint txtANA_Eta_I\n");
    EXPECT_EQ(lines[0].toStdString(),
              "control txtANA_Eta_I visible=1 enabled=1 text=\"" + text + "\" background=#ffff00");
    EXPECT_TRUE(lines[1].contains(" text=\"\" ")) << lines[1].toStdString();
}

TEST_F(Commands, TypeBreaksLines)
{
    const QStringList lines =
        playInForm("type txtTestoMessaggio(0) \"a\\nb\\r\\nc\"\nprint txtTestoMessaggio(0)\n");
    EXPECT_TRUE(lines[0].contains(" text=\"a\\nb\\nc\" ")) << lines[0].toStdString();
}

TEST_F(Commands, TypeTakesTenThousandCharacters)
{
    inspect = [](Form& form) { EXPECT_EQ(form.field->text(), QString(10000, u'x')); };
    playInForm("type txtANA_Eta_I \"" + std::string(10000, 'x') + "\"\n");
}

TEST_F(Commands, KeyGoesToTheControlOrTheWindow)
{
    inspect = [](Form& form) {
        EXPECT_EQ(form.log, (QStringList{u"field key %1"_s.arg(Qt::Key_F3), u"form key %1"_s.arg(Qt::Key_F3),
                                         u"form key %1"_s.arg(Qt::Key_F6)}));
    };
    playInForm("key txtANA_Eta_I F3\nfocus chkANA_Eta\nkey frmSMS F6\n");
}

TEST_F(Commands, FocusIsTakenByAClick)
{
    const QStringList lines = playInForm("focus txtANA_Eta_I\nprint txtANA_Eta_I\n"
                                         "focus txtTestoMessaggio(0)\nprint txtANA_Eta_I\n");
    EXPECT_TRUE(lines[0].endsWith("background=#ffff00")) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].endsWith("background=#ffffff")) << lines[1].toStdString();
}

TEST_F(Commands, PageClicksTheTab)
{
    const QStringList lines = playInForm("print tab_Invio\npage tab_Invio 1\nprint tab_Invio\n");
    EXPECT_TRUE(lines[0].contains(" page=0 pages=\"Ricerca destinatari\",\"Tipo di invio\" "))
        << lines[0].toStdString();
    EXPECT_TRUE(lines[1].contains(" page=1 ")) << lines[1].toStdString();
}

TEST_F(Commands, PageIndexesCountHiddenPages)
{
    prepare = [](Form& form) {
        form.tabs->setTabVisible(2, true);
        form.tabs->setTabVisible(1, false);
    };
    const QStringList lines = playInForm("page tab_Invio 2\nprint tab_Invio\n");
    EXPECT_TRUE(lines[0].contains(" page=2 pages=\"Ricerca destinatari\",\"Prepara per invio\" "))
        << lines[0].toStdString();
    EXPECT_EQ(refusal("page tab_Invio 1"), u"page 1 is hidden"_s);
}

TEST_F(Commands, ChooseTakesAnEntryOfTheList)
{
    inspect = [](Form& form) { EXPECT_EQ(form.log, (QStringList{"activated 2", "activated 0"})); };
    const QStringList lines = playInForm("choose cbbPeriodo \"Ultimo anno\"\nprint cbbPeriodo\n"
                                         "choose cbbPeriodo (nessuno)\nprint cbbPeriodo\nlines cbbPeriodo\n");
    EXPECT_TRUE(lines[0].contains(" text=\"Ultimo anno\" ")) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].contains(" text=\"(nessuno)\" ")) << lines[1].toStdString();
    EXPECT_EQ(lines.mid(2),
              (QStringList{"line 0 \"(nessuno)\"", "line 1 \"Ultimo mese\"", "line 2 \"Ultimo anno\""}));
}

TEST_F(Commands, RequestAndClearPressTheSelectorsButtons)
{
    const QStringList lines = playInForm("request cntrMessaggio(0)\nprint cntrMessaggio(0)\n"
                                         "clear cntrMessaggio(0)\nprint cntrMessaggio(0)\n");
    EXPECT_TRUE(lines[0].startsWith(
        "control cntrMessaggio(0) visible=1 enabled=1 id=7 text=\"D'Amico \\\"50%\\\"\" background=#"))
        << lines[0].toStdString();
    EXPECT_TRUE(lines[1].contains(" id=-1 text=\"\" ")) << lines[1].toStdString();
}

TEST_F(Commands, FolderSelectsInTheTree)
{
    inspect = [](Form& form) { EXPECT_EQ(form.folders->selected, u"C:\\Sender"_s); };
    playInForm("folder FolderTreeview1 \"C:\\\\Sender\"\n");
    inspect = [](Form& form) { EXPECT_TRUE(form.folders->selected.isEmpty()); };
    EXPECT_EQ(refusal("folder FolderTreeview1 \"C:\\\\Gone\""), u"there is no folder \"C:\\\\Gone\""_s);
    EXPECT_EQ(refusal("folder cmdElabora C:"), u"\"cmdElabora\" is no folder tree"_s);
}

TEST_F(Commands, LinesPrintsAList)
{
    EXPECT_EQ(playInForm("lines List_INFO\n"),
              (QStringList{"line 0 \"       - ***\"", "line 1 \"OK     - Rossi \\\"M\\\" 😀\""}));
    EXPECT_EQ(refusal("lines cmdElabora"), u"\"cmdElabora\" is no list"_s);
}

TEST_F(Commands, PrintTellsAWindowsCaptionAndTag)
{
    prepare = [](Form& form) { form.setProperty("tag", "OK"); };
    const QStringList lines = playInForm("print frmSMS\n");
    EXPECT_TRUE(lines[0].startsWith(
        "control frmSMS visible=1 enabled=1 text=\"Zul_MessageBuilder\" tag=\"OK\" background=#"))
        << lines[0].toStdString();
}

TEST_F(Commands, PrintTellsAGroupBoxsCaption)
{
    prepare = [](Form& form) {
        form.layout()->addWidget(named<QGroupBox>("frameRicorrenze", u"Ricorrenze"_s));
    };
    EXPECT_TRUE(playInForm("print frameRicorrenze\n")[0].contains(" text=\"Ricorrenze\" "));
}

TEST_F(Commands, PrintWorksOnHiddenAndDisabledControlsAndOtherPages)
{
    prepare = [](Form& form) {
        form.button->hide();
        form.field->setEnabled(false);
    };
    const QStringList lines = playInForm("print cmdElabora\nprint txtANA_Eta_I\n"
                                         "print \"Tipo di invio\"\nprint \"Prepara per invio\"\n");
    EXPECT_TRUE(lines[0].startsWith("control cmdElabora visible=0 enabled=1 ")) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].startsWith("control txtANA_Eta_I visible=1 enabled=0 ")) << lines[1].toStdString();
    // A page that is not in front hides nothing; one without a tab does.
    EXPECT_TRUE(lines[2].contains(" visible=1 ")) << lines[2].toStdString();
    EXPECT_TRUE(lines[3].contains(" visible=0 ")) << lines[3].toStdString();
}

TEST_F(Commands, ResizeAndShot)
{
    QTemporaryDir folder;
    const QString file = folder.filePath(u"à shot.png"_s);
    playInForm(("resize 640 700\nshot \"" + file + "\"\n").toStdString());
    EXPECT_EQ(QImage(file).size(), QSize(640, 700));
    EXPECT_TRUE(refusal(("shot \"" + folder.filePath("no/such/x.png") + "\"").toStdString())
                    .endsWith("cannot be written"));
    EXPECT_EQ(refusal("resize 0 10"), u"0 is no size"_s);
    EXPECT_EQ(refusal("resize 10 999999999"), u"999999999 is no size"_s);
}

TEST_F(Commands, CloseUsesTheCloseButton)
{
    const Outcome outcome = play(host, "call show\nclose\ncall show\n");
    EXPECT_EQ(outcome.lines.count(u"window frmSMS hidden tag=\"\""_s), 2) << outcome.text();
}

TEST_F(Commands, TheTagThatAHandlerSetsAfterHidingIsPrinted)
{
    prepare = [](Form& form) {
        QObject::connect(form.button, &QPushButton::clicked, &form, [&form] {
            form.hide();
            form.setProperty("tag", "ESC");
        });
    };
    const Outcome outcome = play(host, "call show\nclick cmdElabora\n");
    EXPECT_EQ(outcome.lines[1], u"window frmSMS hidden tag=\"ESC\""_s) << outcome.text();
}

TEST_F(Commands, AnswerPressesTheBoxsButton)
{
    prepare = [](Form& form) {
        QObject::connect(form.button, &QPushButton::clicked, &form, [&form] {
            QMessageBox box(QMessageBox::Warning, u"Manager messaggi"_s, u"Procedere?\r\n\"sì\""_s,
                            QMessageBox::Yes | QMessageBox::No, &form);
            form.log.append(box.exec() == QMessageBox::Yes ? u"yes"_s : u"no"_s);
        });
    };
    inspect = [](Form& form) { EXPECT_EQ(form.log, (QStringList{"click", "no", "click", "yes"})); };
    const QStringList lines = playInForm("click cmdElabora\nanswer no\nclick cmdElabora\nanswer yes\n");
    EXPECT_EQ(lines, (QStringList{"message icon=exclamation title=\"Manager messaggi\" "
                                  "text=\"Procedere?\\r\\n\\\"sì\\\"\" buttons=yesno",
                                  "answer no",
                                  "message icon=exclamation title=\"Manager messaggi\" "
                                  "text=\"Procedere?\\r\\n\\\"sì\\\"\" buttons=yesno",
                                  "answer yes"}));
}

TEST_F(Commands, ABoxOfItsOwnWordsIsReadFromItsProperties)
{
    prepare = [](Form& form) {
        QObject::connect(form.button, &QPushButton::clicked, &form, [&form] {
            QMessageBox box(&form);
            box.setText(u"a\nb"_s);
            box.setProperty("zulText", u"a\r\nb"_s);
            box.setProperty("zulTitle", u"T"_s);
            box.setProperty("zulIcon", u"question"_s);
            box.setProperty("zulButtons", u"yesno"_s);
            box.addButton(u"Sì"_s, QMessageBox::YesRole)->setObjectName("yes");
            box.addButton(u"No"_s, QMessageBox::NoRole)->setObjectName("no");
            box.exec();
        });
    };
    EXPECT_EQ(
        playInForm("click cmdElabora\nanswer yes\n"),
        (QStringList{"message icon=question title=\"T\" text=\"a\\r\\nb\" buttons=yesno", "answer yes"}));
}

TEST_F(Commands, WhileABoxIsOpenOnlyLookingIsAllowed)
{
    prepare = [](Form& form) {
        QObject::connect(form.button, &QPushButton::clicked, &form,
                         [&form] { QMessageBox::information(&form, u"T"_s, u"x"_s); });
    };
    host.sqlLines = QStringList{"sql \"1\" NULL"};
    QTemporaryDir folder;
    const QStringList lines = playInForm("click cmdElabora\nprint txtANA_Eta_I\nlines List_INFO\n"
                                         "sql \"select 1\"\nshot \"" +
                                         folder.filePath("x.png").toStdString() + "\"\nanswer ok\n");
    EXPECT_EQ(lines.size(), 6);
    EXPECT_TRUE(QFile::exists(folder.filePath("x.png")));
    for (const char* command : {"click cmdElabora", "type txtANA_Eta_I x", "key txtANA_Eta_I F3", "close",
                                "resize 100 100", "call show", "focus txtANA_Eta_I"}) {
        const Outcome outcome = play(host, std::string("call show\nclick cmdElabora\n") + command + "\n");
        EXPECT_EQ(outcome.result, 2) << command;
        EXPECT_EQ(outcome.errors, QStringList{"line 3: a message box is open"}) << command;
    }
}

TEST_F(Commands, AnswerNeedsABoxAndItsButton)
{
    EXPECT_EQ(refusal("answer ok"), u"no message box is open"_s);
    prepare = [](Form& form) {
        QObject::connect(form.button, &QPushButton::clicked, &form,
                         [&form] { QMessageBox::information(&form, u"T"_s, u"x"_s); });
    };
    const Outcome outcome = play(host, "call show\nclick cmdElabora\nanswer yes\n");
    EXPECT_EQ(outcome.errors, QStringList{"line 3: the message box has no button \"yes\""});
}

TEST_F(Commands, WhatCannotBeDoneIsSaid)
{
    prepare = [](Form& form) {
        form.one->setEnabled(false);
        form.two->hide();
    };
    EXPECT_EQ(refusal("click cmdNone"), u"no control \"cmdNone\" in frmSMS"_s);
    EXPECT_EQ(refusal("click cmdelabora"), u"no control \"cmdelabora\" in frmSMS"_s);
    EXPECT_EQ(refusal("print cmdNone"), u"no control \"cmdNone\" in frmSMS"_s);
    EXPECT_EQ(refusal("click RBN_SoloSMS"), u"\"RBN_SoloSMS\" is disabled"_s);
    EXPECT_EQ(refusal("click RBN_SoloEMAIL"), u"\"RBN_SoloEMAIL\" is hidden"_s);
    EXPECT_EQ(refusal("click \"Tipo di invio\""), u"\"Tipo di invio\" is hidden"_s);
    EXPECT_EQ(refusal("page tab_Invio 2"), u"page 2 is hidden"_s);
    EXPECT_EQ(refusal("page tab_Invio 9"), u"there is no page 9"_s);
    EXPECT_EQ(refusal("page cmdElabora 0"), u"\"cmdElabora\" is no tab control"_s);
    EXPECT_EQ(refusal("page tab_Invio one"), u"\"one\" is no whole number"_s);
    EXPECT_EQ(refusal("choose cbbPeriodo Domani"), u"there is no entry \"Domani\""_s);
    EXPECT_EQ(refusal("choose cmdElabora x"), u"\"cmdElabora\" is no drop-down list"_s);
    EXPECT_EQ(refusal("request cmdElabora"), u"\"cmdElabora\" is no selector field"_s);
    EXPECT_EQ(refusal("row cmdElabora 0"), u"\"cmdElabora\" is no grid"_s);
    EXPECT_EQ(refusal("key txtANA_Eta_I F99"), u"unknown key \"F99\""_s);
    EXPECT_EQ(refusal("dance"), u"unknown command \"dance\""_s);
    EXPECT_EQ(refusal("click"), u"click has the wrong number of words"_s);
    EXPECT_EQ(refusal("click a b"), u"click has the wrong number of words"_s);
    EXPECT_EQ(refusal("type txtANA_Eta_I \"x"), u"a quoted word does not end"_s);
}

TEST_F(Commands, WithoutAWindowThereIsNothingToWorkOn)
{
    for (const char* command : {"click x", "close", "resize 1 1", "shot x.png", "print x"}) {
        const Outcome outcome = play(host, command);
        EXPECT_EQ(outcome.result, 2) << command;
        EXPECT_EQ(outcome.errors, QStringList{"line 1: no window is open"}) << command;
    }
}

TEST_F(Commands, ACoveredControlCannotBeClicked)
{
    prepare = [](Form& form) {
        QWidget* cover = named<QPushButton>("cmdCover", u"cover"_s);
        cover->setParent(&form);
        cover->setGeometry(0, 0, 4000, 4000);
        cover->raise();
        cover->show();
    };
    EXPECT_EQ(refusal("click cmdElabora"),
              u"\"cmdElabora\" cannot be reached by the mouse (there is \"cmdCover\")"_s);
}

TEST_F(Commands, AControlInAScrollAreaIsScrolledTo)
{
    prepare = [](Form& form) {
        auto* area = new QScrollArea;
        auto* sheet = new QWidget;
        auto* column = new QVBoxLayout(sheet);
        column->addSpacing(3000);
        auto* deep = named<QPushButton>("cmdDeep", u"deep"_s);
        column->addWidget(deep);
        area->setWidget(sheet);
        area->setFixedHeight(60);
        form.layout()->addWidget(area);
        QObject::connect(deep, &QPushButton::clicked, &form, [&form] { form.log.append("deep"); });
    };
    inspect = [](Form& form) { EXPECT_EQ(form.log, QStringList{"deep"}); };
    playInForm("click cmdDeep\n");
}

TEST_F(Commands, CallPassesQuotedAndBareValues)
{
    host.members.insert("idUtente", [](const std::vector<zul::host::Word>& values) {
        QStringList texts;
        for (const zul::host::Word& value : values) {
            texts.append((value.quoted ? u"text:"_s : u"bare:"_s) + value.text);
        }
        return texts.join(u'|');
    });
    const Outcome outcome = play(host, "call idUtente 7 \"7\" true\ncall Nothing\n");
    EXPECT_EQ(outcome.lines,
              (QStringList{"return idUtente bare:7|text:7|bare:true", "failed Nothing 0x80020006"}));
    EXPECT_EQ(outcome.result, 0);
}

TEST_F(Commands, SqlPrintsItsRowsOrFails)
{
    host.sqlLines = QStringList{"sql \"1\" NULL", "sql \"2\" \"à\""};
    const Outcome outcome = play(host, "sql \"SELECT * FROM [t] WHERE a = 'x'\"\n");
    EXPECT_EQ(outcome.lines, host.sqlLines);
    EXPECT_EQ(host.statements, QStringList{"SELECT * FROM [t] WHERE a = 'x'"});
    host.sqlFails = true;
    const Outcome failed = play(host, "sql \"SELECT\"\n");
    EXPECT_EQ(failed.result, 2);
    EXPECT_EQ(failed.errors, QStringList{"line 1: no such table"});
}

TEST_F(Commands, ANoticeIsNoWindowAndAProgressPrintsAtEachChange)
{
    prepare = [](Form& form) {
        QObject::connect(form.button, &QPushButton::clicked, &form, [&form] {
            auto* notice = named<QFrame>("waitNotice", &form);
            notice->setProperty("zulNotice", true);
            notice->setProperty("heading", u"Caricamento avviato..."_s);
            notice->setProperty("text", u"Attendere"_s);
            notice->show();
            auto* wait = named<QFrame>("WaitPlease", &form);
            for (int i = 1; i <= 2; ++i) {
                wait->show();
                wait->setProperty("caption", u"Invio notifica %1 di 2"_s.arg(i));
                wait->setProperty("value", i * 50);
                QCoreApplication::processEvents();
                QCoreApplication::processEvents();
            }
            wait->hide();
            notice->hide();
        });
    };
    EXPECT_EQ(
        playInForm("click cmdElabora\nclick cmdElabora\n"),
        (QStringList{"notice shown heading=\"Caricamento avviato...\" text=\"Attendere\"",
                     "progress visible=1 caption=\"Invio notifica 1 di 2\" value=50",
                     "progress visible=1 caption=\"Invio notifica 2 di 2\" value=100",
                     "progress visible=0 caption=\"Invio notifica 2 di 2\" value=100", "notice hidden",
                     "notice shown heading=\"Caricamento avviato...\" text=\"Attendere\"",
                     "progress visible=1 caption=\"Invio notifica 1 di 2\" value=50",
                     "progress visible=1 caption=\"Invio notifica 2 di 2\" value=100",
                     "progress visible=0 caption=\"Invio notifica 2 di 2\" value=100", "notice hidden"}));
}
} // namespace

#include "CommandsTest.moc"
