#include "host/services/FrmRicercaAvanzata.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QtTest/QTest>

#include <gtest/gtest.h>

using namespace zul::host;

namespace {

class FrmRicercaAvanzataTest : public ::testing::Test
{
protected:
    void SetUp() override { m_form.show(); }

    template <typename Control>
    Control* control(const char* name) const
    {
        auto* const found = m_form.findChild<Control*>(QString::fromUtf8(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    void click(const char* name) const { QTest::mouseClick(control<QAbstractButton>(name), Qt::LeftButton); }
    void choose(const char* name, const char* entry) const
    {
        auto* const box = control<QComboBox>(name);
        const int index = box->findText(QString::fromUtf8(entry));
        ASSERT_GE(index, 0) << entry;
        box->setCurrentIndex(index);
    }

    FrmRicercaAvanzata m_form;
};

} // namespace

TEST_F(FrmRicercaAvanzataTest, BuildsTheSubSelectOfItsRows)
{
    choose("cbbCampo(0)", "Comune");
    choose("cbbConfronto(0)", "contiene");
    QTest::keyClicks(control<QLineEdit>("txtValore(0)"), "Aquila");
    click("cmdAggiungi");
    choose("cbbCampo(1)", "Consenso SMS");
    EXPECT_FALSE(control<QLineEdit>("txtValore(1)")->isVisible());
    click("optAlmenoUna");
    click("cmdOK");
    EXPECT_EQ(m_form.result(), QDialog::Accepted);
    EXPECT_EQ(m_form.sql(), "SELECT idCliente FROM tabClienti WHERE tabClienti.Paese LIKE '%Aquila%' OR"
                            " tabClienti.ConsensoSms <> 0");
}

TEST_F(FrmRicercaAvanzataTest, StaysOpenAndSaysWhatIsWrong)
{
    choose("cbbCampo(0)", "Data di nascita");
    QTest::keyClicks(control<QLineEdit>("txtValore(0)"), "ieri");
    click("cmdOK");
    EXPECT_TRUE(m_form.isVisible());
    EXPECT_EQ(control<QLabel>("lblErrore")->text(), "Data di nascita: \"ieri\" non è una data valida.");
    QTest::keyClicks(control<QLineEdit>("txtValore(0)"), "x");
    EXPECT_TRUE(control<QLabel>("lblErrore")->text().isEmpty());
    click("cmdAnnulla");
    EXPECT_FALSE(m_form.isVisible());
    EXPECT_EQ(m_form.result(), QDialog::Rejected);
}

TEST_F(FrmRicercaAvanzataTest, KeepsItsRowsAndTheirNumbers)
{
    click("cmdAggiungi");
    click("cmdAggiungi");
    choose("cbbCampo(2)", "Provincia");
    click("cmdTogli(0)");
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(control<QComboBox>("cbbCampo(1)")->currentText(), "Provincia");
    EXPECT_EQ(m_form.findChild<QComboBox*>("cbbCampo(2)"), nullptr);
    click("cmdOK");
    m_form.show();
    EXPECT_EQ(control<QComboBox>("cbbCampo(1)")->currentText(), "Provincia");
}

TEST_F(FrmRicercaAvanzataTest, AlwaysHasARow)
{
    click("cmdTogli(0)");
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_NE(control<QComboBox>("cbbCampo(0)"), nullptr);
}

TEST_F(FrmRicercaAvanzataTest, OffersTheComparisonsOfTheField)
{
    choose("cbbCampo(0)", "Punti fidelity");
    EXPECT_EQ(control<QComboBox>("cbbConfronto(0)")->findText("contiene"), -1);
    choose("cbbConfronto(0)", "maggiore di");
    choose("cbbCampo(0)", "Comune");
    EXPECT_EQ(control<QComboBox>("cbbConfronto(0)")->currentText(), "maggiore di");
}

TEST_F(FrmRicercaAvanzataTest, CanBeDrawn)
{
    choose("cbbCampo(0)", "Comune");
    QTest::keyClicks(control<QLineEdit>("txtValore(0)"), "Roma");
    click("cmdAggiungi");
    choose("cbbCampo(1)", "Data di nascita");
    choose("cbbConfronto(1)", "maggiore o uguale a");
    click("cmdAggiungi");
    choose("cbbCampo(2)", "Consenso SMS");
    QApplication::processEvents();
    const QPixmap picture = m_form.grab();
    EXPECT_GE(picture.width(), 680);
    if (const QString folder = qEnvironmentVariable("ZUL_TEST_PICTURES"); !folder.isEmpty()) {
        EXPECT_TRUE(picture.save(folder + "/frmRicercaAvanzata.png"));
    }
}
