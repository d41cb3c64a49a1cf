#include "platform/NotebookPage.h"
#include "platform/TabStrip.h"
#include "tests/support/KeyWindow.h"

#include <QKeyEvent>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace {

class TabStripTest : public testing::Test
{
protected:
    TabStripTest()
    {
        for (const int topic : {4, 7, 12}) {
            m_strip->addKeyedTab(keyOf(topic), QStringLiteral("Topic %1").arg(topic));
        }
        m_window.resize(500, 80);
        m_strip->setGeometry(10, 10, 480, m_strip->sizeHint().height());
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
    }

    static QString keyOf(int topic) { return QStringLiteral("Key%1").arg(topic); }

    void click(int position) const
    {
        QTest::mouseClick(m_strip, Qt::LeftButton, {}, m_strip->tabRect(position).center());
    }

    KeyWindow m_window;
    TabStrip *m_strip = new TabStrip(&m_window);
    QSignalSpy m_chosen{m_strip, &TabStrip::chosen};
};

TEST(TabStrip, AddingAndRemovingTabsSaysNothing)
{
    TabStrip strip;
    const QSignalSpy chosen(&strip, &TabStrip::chosen);
    strip.addKeyedTab(QStringLiteral("Key1"), QStringLiteral("One"));
    strip.addKeyedTab(QStringLiteral("Key2"), QStringLiteral("Two"));
    strip.removeAllTabs();
    EXPECT_EQ(strip.count(), 0);
    EXPECT_EQ(chosen.count(), 0);
}

TEST(TabStrip, WithoutTabsThereIsNoSelectedKeyAndNothingToSelect)
{
    TabStrip strip;
    const QSignalSpy chosen(&strip, &TabStrip::chosen);
    EXPECT_EQ(strip.selectedKey(), QString());
    strip.select(0);
    strip.select(-1);
    EXPECT_EQ(chosen.count(), 0);
    EXPECT_EQ(strip.positionOf(QStringLiteral("Key1")), -1);
}

TEST_F(TabStripTest, TabsAreAddedAtTheEndAndDoNotTakeTheSelection)
{
    EXPECT_EQ(m_strip->selectedKey(), keyOf(4));
    m_strip->addKeyedTab(keyOf(20), QStringLiteral("New"));
    EXPECT_EQ(m_strip->selectedKey(), keyOf(4));
    EXPECT_EQ(m_strip->positionOf(keyOf(20)), 3);
}

TEST_F(TabStripTest, ATabIsFoundByItsWholeKey)
{
    EXPECT_EQ(m_strip->positionOf(keyOf(4)), 0);
    EXPECT_EQ(m_strip->positionOf(keyOf(12)), 2);
    EXPECT_EQ(m_strip->positionOf(keyOf(1)), -1);
    EXPECT_EQ(m_strip->positionOf(QString()), -1);
}

TEST_F(TabStripTest, AClickOnAnotherTabSelectsItAndSaysSoOnce)
{
    click(2);
    EXPECT_EQ(m_strip->selectedKey(), keyOf(12));
    EXPECT_EQ(m_chosen.count(), 1);
}

TEST_F(TabStripTest, AClickOnTheSelectedTabSaysSoAgain)
{
    click(0);
    EXPECT_EQ(m_strip->selectedKey(), keyOf(4));
    EXPECT_EQ(m_chosen.count(), 1);
}

TEST_F(TabStripTest, WhenItSaysSoTheNewTabIsAlreadySelected)
{
    QString key;
    QObject::connect(m_strip, &TabStrip::chosen, m_strip, [&] { key = m_strip->selectedKey(); });
    click(1);
    EXPECT_EQ(key, keyOf(7));
}

TEST_F(TabStripTest, OtherMouseButtonsAndClicksBesideTheTabsChooseNothing)
{
    QTest::mouseClick(m_strip, Qt::RightButton, {}, m_strip->tabRect(0).center());
    QTest::mouseClick(m_strip, Qt::RightButton, {}, m_strip->tabRect(1).center());
    QTest::mouseClick(m_strip, Qt::LeftButton, {}, {470, 5});
    EXPECT_EQ(m_chosen.count(), 0);
    EXPECT_EQ(m_strip->selectedKey(), keyOf(4));
}

TEST_F(TabStripTest, ArrowKeysChooseTheNeighbourAndSayNothingAtTheEnds)
{
    m_strip->setFocus();
    QTest::keyClick(m_strip, Qt::Key_Right);
    EXPECT_EQ(m_strip->selectedKey(), keyOf(7));
    QTest::keyClick(m_strip, Qt::Key_Left);
    EXPECT_EQ(m_strip->selectedKey(), keyOf(4));
    EXPECT_EQ(m_chosen.count(), 2);
    QTest::keyClick(m_strip, Qt::Key_Left);
    EXPECT_EQ(m_chosen.count(), 2);
}

TEST_F(TabStripTest, KeysThatItDoesNotUseGoToTheWindow)
{
    m_strip->setFocus();
    QTest::keyClick(m_strip, Qt::Key_N, Qt::AltModifier);
    QTest::keyClick(m_strip, Qt::Key_Escape);
    EXPECT_EQ(m_window.keys, (QVector<int>{Qt::Key_N, Qt::Key_Escape}));
}

TEST_F(TabStripTest, SelectingFromCodeSaysSoAlsoForTheSelectedTab)
{
    m_strip->select(1);
    m_strip->select(1);
    EXPECT_EQ(m_strip->selectedKey(), keyOf(7));
    EXPECT_EQ(m_chosen.count(), 2);
    m_strip->select(3);
    m_strip->select(-1);
    EXPECT_EQ(m_chosen.count(), 2);
    EXPECT_EQ(m_strip->selectedKey(), keyOf(7));
}

TEST_F(TabStripTest, RemovingAllTabsWhileALaterOneIsSelectedSaysNothing)
{
    m_strip->select(2);
    m_chosen.clear();
    m_strip->removeAllTabs();
    EXPECT_EQ(m_chosen.count(), 0);
    EXPECT_EQ(m_strip->selectedKey(), QString());
}

TEST_F(TabStripTest, AnAmpersandIsALetterLikeAnyOther)
{
    for (const QString &caption : {QStringLiteral("Q&A"), QStringLiteral("R && D"), QStringLiteral("&")}) {
        m_strip->setKeyedCaption(1, caption);
        EXPECT_EQ(m_strip->keyedCaption(1), caption);
        QTest::keyClick(m_strip, Qt::Key_A, Qt::AltModifier);
        EXPECT_EQ(m_strip->selectedKey(), keyOf(4)) << "no shortcut";
    }
    m_strip->addKeyedTab(keyOf(30), QStringLiteral("&Salt & pepper"));
    EXPECT_EQ(m_strip->keyedCaption(3), QStringLiteral("&Salt & pepper"));
    EXPECT_EQ(m_strip->keyedCaption(9), QString());
}

TEST_F(TabStripTest, ATabIsAsWideAsItsCaption)
{
    const int before = m_strip->tabRect(1).width();
    m_strip->setKeyedCaption(1, QStringLiteral("A rather long name of a topic"));
    EXPECT_GT(m_strip->tabRect(1).width(), before);
    EXPECT_GE(m_strip->tabRect(1).width(), QFontMetrics(m_strip->font()).horizontalAdvance(m_strip->keyedCaption(1)));
}

TEST_F(TabStripTest, ATabGrowsWithTheLetters)
{
    const QSize before = m_strip->tabRect(1).size();
    QFont larger = m_strip->font();
    larger.setPointSizeF(2 * larger.pointSizeF());
    m_strip->setFont(larger);
    EXPECT_GT(m_strip->tabRect(1).width(), before.width());
    EXPECT_GT(m_strip->tabRect(1).height(), before.height());
}

TEST_F(TabStripTest, WithManyTabsAllCanBeReachedByTheScrollButtons)
{
    for (int topic = 100; topic < 130; ++topic) {
        m_strip->addKeyedTab(keyOf(topic), QStringLiteral("Topic %1").arg(topic));
    }
    auto *right = m_strip->findChild<QToolButton *>(QStringLiteral("ScrollRightButton"));
    ASSERT_NE(right, nullptr);
    ASSERT_TRUE(right->isVisible());
    for (int i = 0; i < 60 && right->isEnabled(); ++i) {
        QTest::mouseClick(right, Qt::LeftButton);
    }
    const QRect last = m_strip->tabRect(m_strip->count() - 1);
    EXPECT_LE(last.right(), right->geometry().right());
    EXPECT_GT(last.left(), 0);
    EXPECT_EQ(m_chosen.count(), 0) << "scrolling chooses nothing";
}

TEST_F(TabStripTest, ATabThatIsSelectedComesIntoView)
{
    for (int topic = 100; topic < 130; ++topic) {
        m_strip->addKeyedTab(keyOf(topic), QStringLiteral("Topic %1").arg(topic));
    }
    m_strip->select(m_strip->count() - 1);
    EXPECT_TRUE(m_strip->rect().contains(m_strip->tabRect(m_strip->count() - 1).center()));
}

TEST_F(TabStripTest, TheWheelScrollsAndChoosesNothing)
{
    for (int topic = 100; topic < 130; ++topic) {
        m_strip->addKeyedTab(keyOf(topic), QStringLiteral("Topic %1").arg(topic));
    }
    const int before = m_strip->tabRect(5).left();
    QWheelEvent turn({50, 10}, m_strip->mapToGlobal(QPointF(50, 10)), {}, {0, -120}, Qt::NoButton, {},
                     Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_strip, &turn);
    EXPECT_LT(m_strip->tabRect(5).left(), before);
    EXPECT_EQ(m_chosen.count(), 0);
    EXPECT_EQ(m_strip->selectedKey(), keyOf(4));
}

TEST(TabStripLook, TheSelectedTabIsPartOfThePageBelowAndTheOthersAreNot)
{
    NotebookPage page(PageRuling{});
    auto *strip = new TabStrip(&page);
    strip->addKeyedTab(QStringLiteral("Key1"), QStringLiteral("One"));
    strip->addKeyedTab(QStringLiteral("Key2"), QStringLiteral("Two"));
    strip->select(1);
    strip->resize(300, strip->sizeHint().height());
    for (const double scale : {1.0, 2.0}) {
        QImage image((QSizeF(strip->size()) * scale).toSize(), QImage::Format_ARGB32);
        image.setDevicePixelRatio(scale);
        strip->render(&image);
        const int foot = image.height() - 1;
        const auto columnOf = [&](int position) { return qRound(strip->tabRect(position).center().x() * scale); };
        EXPECT_EQ(image.pixel(columnOf(1), foot), page.palette().color(QPalette::Base).rgb());
        EXPECT_EQ(image.pixel(columnOf(0), foot), page.palette().color(QPalette::Dark).rgb());
        EXPECT_EQ(image.pixel(columnOf(0), foot - qRound(3 * scale)), page.palette().color(QPalette::Button).rgb());
    }
}

TEST(TabStripLook, ALongCaptionIsKeptWholeInATabOfReasonableWidth)
{
    TabStrip strip;
    const QString longest(255, QLatin1Char('W'));
    strip.addKeyedTab(QStringLiteral("Key1"), longest);
    EXPECT_EQ(strip.keyedCaption(0), longest);
    EXPECT_LT(strip.tabRect(0).width(), 300);
}

TEST(TabStripLook, IsSetInTheNotebooksFont)
{
    EXPECT_EQ(TabStrip().font().family(), QStringLiteral("Comic Sans MS"));
}

} // namespace
