#include "platform/ImageButton.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QSignalSpy>
#include <QSvgRenderer>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

/// A window that keeps the keys that reach it.
class KeyWindow : public QWidget
{
public:
    QVector<int> keys;

protected:
    void keyPressEvent(QKeyEvent *event) override { keys.append(event->key()); }
};

class ImageButtonTest : public testing::Test
{
protected:
    ImageButtonTest()
    {
        auto *layout = new QVBoxLayout(&m_window);
        layout->addWidget(m_box);
        layout->addWidget(m_button);
        layout->addWidget(m_neighbour);
        for (ImageButton *button : {m_button, m_neighbour}) {
            button->setPicture(QStringLiteral("exit"));
        }
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_box->setFocus();
    }

    KeyWindow m_window;
    QLineEdit *m_box = new QLineEdit;
    ImageButton *m_button = new ImageButton;
    ImageButton *m_neighbour = new ImageButton;
};

QImage picture(QWidget &widget, double scale = 1)
{
    QImage image((QSizeF(widget.size()) * scale).toSize(), QImage::Format_ARGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

QImage blank(const QWidget &widget)
{
    QImage image(widget.size(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    return image;
}

/// The greatest distance of any pixel from grey.
int colourfulness(const QImage &image)
{
    int most = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            most = qMax(most, image.pixelColor(x, y).hsvSaturation() * image.pixelColor(x, y).value() / 255);
        }
    }
    return most;
}

int darkest(const QImage &image)
{
    int least = 255;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            least = qMin(least, qGray(image.pixel(x, y)));
        }
    }
    return least;
}

TEST_F(ImageButtonTest, AClickPressesItAndLeavesTheFocusWhereItIs)
{
    const QSignalSpy clicks(m_button, &ImageButton::clicked);
    QTest::mouseClick(m_button, Qt::LeftButton);
    EXPECT_EQ(clicks.count(), 1);
    EXPECT_TRUE(m_box->hasFocus());
}

TEST_F(ImageButtonTest, TabGivesItTheFocusAndSpacePressesIt)
{
    const QSignalSpy clicks(m_button, &ImageButton::clicked);
    QTest::keyClick(m_box, Qt::Key_Tab);
    ASSERT_TRUE(m_button->hasFocus());
    QTest::keyClick(m_button, Qt::Key_Space);
    EXPECT_EQ(clicks.count(), 1);
    EXPECT_TRUE(m_window.keys.isEmpty());
}

TEST_F(ImageButtonTest, EveryOtherKeyGoesToTheWindow)
{
    const QVector<int> keys{Qt::Key_Left, Qt::Key_Right, Qt::Key_Up,     Qt::Key_Down,
                            Qt::Key_M,    Qt::Key_Enter, Qt::Key_Return, Qt::Key_Escape};
    const QSignalSpy clicks(m_button, &ImageButton::clicked);
    m_button->setFocus(Qt::TabFocusReason);
    for (const int key : keys) {
        QTest::keyClick(m_button, static_cast<Qt::Key>(key));
    }
    EXPECT_EQ(m_window.keys, keys);
    EXPECT_EQ(clicks.count(), 0);
    EXPECT_TRUE(m_button->hasFocus());
}

TEST_F(ImageButtonTest, EscapeWhileSpaceIsDownTakesThePressBack)
{
    const QSignalSpy clicks(m_button, &ImageButton::clicked);
    m_button->setFocus(Qt::TabFocusReason);
    QTest::keyPress(m_button, Qt::Key_Space);
    EXPECT_TRUE(m_button->isDown());
    QTest::keyClick(m_button, Qt::Key_Escape);
    QTest::keyRelease(m_button, Qt::Key_Space);
    EXPECT_EQ(clicks.count(), 0);
    EXPECT_TRUE(m_window.keys.isEmpty());
}

TEST_F(ImageButtonTest, AnUnavailableButtonTakesNoClick)
{
    const QSignalSpy clicks(m_button, &ImageButton::clicked);
    m_button->setEnabled(false);
    QTest::mouseClick(m_button, Qt::LeftButton);
    EXPECT_EQ(clicks.count(), 0);
}

TEST_F(ImageButtonTest, ItsPointerIsTheUpArrow)
{
    EXPECT_EQ(m_button->cursor().shape(), Qt::UpArrowCursor);
}

TEST_F(ImageButtonTest, TheHintIsToolTipAndAccessibleName)
{
    m_button->setHint(QStringLiteral("Exit (Esc)"));
    EXPECT_EQ(m_button->toolTip(), QStringLiteral("Exit (Esc)"));
    EXPECT_EQ(m_button->accessibleName(), QStringLiteral("Exit (Esc)"));
}

TEST_F(ImageButtonTest, ThePictureShowsAndCanBeChanged)
{
    const QImage exit = picture(*m_button);
    EXPECT_NE(exit, blank(*m_button));
    m_button->setPicture(QStringLiteral("help"));
    EXPECT_EQ(m_button->picture(), QStringLiteral("help"));
    EXPECT_NE(picture(*m_button), exit);
    m_button->setPicture(QStringLiteral("exit"));
    EXPECT_EQ(picture(*m_button), exit);
}

TEST_F(ImageButtonTest, AMissingPictureIsAnEmptyButton)
{
    m_button->setPicture(QStringLiteral("no such picture"));
    EXPECT_EQ(picture(*m_button), blank(*m_button));
    m_button->setPicture(QString());
    EXPECT_EQ(picture(*m_button), blank(*m_button));
}

TEST_F(ImageButtonTest, AnUnavailableButtonIsGreyAndFaint)
{
    const QImage available = picture(*m_button);
    m_button->setEnabled(false);
    const QImage unavailable = picture(*m_button);
    EXPECT_NE(unavailable, blank(*m_button));
    EXPECT_GT(colourfulness(available), 60);
    EXPECT_LT(colourfulness(unavailable), 8);
    EXPECT_GT(darkest(unavailable), darkest(available) + 60);
}

TEST_F(ImageButtonTest, APressedButtonsPictureMoves)
{
    const QImage up = picture(*m_button);
    QTest::mousePress(m_button, Qt::LeftButton);
    const QImage down = picture(*m_button);
    QTest::mouseRelease(m_button, Qt::LeftButton);
    EXPECT_NE(down, up);
    EXPECT_EQ(down.copy(1, 1, up.width() - 1, up.height() - 1), up.copy(0, 0, up.width() - 1, up.height() - 1));
    EXPECT_EQ(picture(*m_button), up);
}

TEST_F(ImageButtonTest, ACheckableButtonIsCheckedByAClickAndBySpace)
{
    m_button->setCheckable(true);
    QTest::mouseClick(m_button, Qt::LeftButton);
    EXPECT_TRUE(m_button->isChecked());
    EXPECT_TRUE(m_box->hasFocus());
    m_button->setFocus(Qt::TabFocusReason);
    QTest::keyClick(m_button, Qt::Key_Space);
    EXPECT_FALSE(m_button->isChecked());
}

TEST_F(ImageButtonTest, ACheckedButtonHasAColouredGroundAroundTheSamePicture)
{
    const QImage off = picture(*m_button);
    m_button->setCheckable(true);
    EXPECT_EQ(picture(*m_button), off);
    m_button->setChecked(true);
    const QImage on = picture(*m_button);
    const QColor ground = on.pixelColor(3, on.height() / 2);
    EXPECT_EQ(off.pixelColor(3, on.height() / 2), QColor(Qt::white));
    EXPECT_NE(ground, QColor(Qt::white));
    EXPECT_EQ(on.pixelColor(0, on.height() / 2), m_button->palette().color(QPalette::Highlight)) << "with a border";
    EXPECT_EQ(on.pixelColor(0, 0), QColor(Qt::white)) << "and round corners";
    m_button->setChecked(false);
    EXPECT_EQ(picture(*m_button), off);
}

TEST_F(ImageButtonTest, AnUnavailableCheckedButtonIsStillFainter)
{
    m_button->setCheckable(true);
    m_button->setChecked(true);
    const QImage available = picture(*m_button);
    m_button->setEnabled(false);
    EXPECT_NE(picture(*m_button), available);
}

TEST_F(ImageButtonTest, TheFocusShowsAsARing)
{
    m_button->setFocus(Qt::TabFocusReason);
    const QImage image = picture(*m_button);
    const QRgb ring = m_button->palette().color(QPalette::Highlight).rgb();
    EXPECT_EQ(image.pixel(image.width() / 2, 0), ring);
    EXPECT_EQ(image.pixel(0, image.height() / 2), ring);
    EXPECT_EQ(image.pixel(image.width() - 1, image.height() / 2), ring);
}

TEST_F(ImageButtonTest, OnAFineScreenThePictureHasFineDetail)
{
    const QImage fine = picture(*m_button, 2);
    QImage coarse = picture(*m_button).scaled(fine.size());
    coarse.setDevicePixelRatio(2);
    EXPECT_EQ(fine.size(), m_button->size() * 2);
    EXPECT_NE(fine, coarse);
}

TEST_F(ImageButtonTest, ItsSizeFollowsThePictures)
{
    const QSize normal = m_button->sizeHint();
    m_button->setPictureSize(48);
    EXPECT_EQ(m_button->sizeHint(), normal + QSize(16, 16));
}

TEST(ImageButtonPictures, ThatTheBuildMadeAreTheDrawings)
{
    const QStringList drawings = QDir(QStringLiteral(":/icons")).entryList({QStringLiteral("*.svg")});
    ASSERT_GT(drawings.size(), 40);
    for (const QString &drawing : drawings) {
        for (const int side : {32, 64}) {
            QSvgRenderer renderer(QStringLiteral(":/icons/") + drawing);
            QImage drawn(side, side, QImage::Format_ARGB32_Premultiplied);
            drawn.fill(Qt::transparent);
            QPainter painter(&drawn);
            renderer.render(&painter);
            painter.end();
            const QString name = QFileInfo(drawing).completeBaseName();
            const QImage made(QStringLiteral(":/pictures/%1/%2.png").arg(side).arg(name));
            EXPECT_EQ(made.convertToFormat(QImage::Format_ARGB32_Premultiplied), drawn) << qPrintable(name) << side;
        }
    }
}

} // namespace
