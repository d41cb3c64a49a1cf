#include "platform/ElidedLabel.h"

#include <QHBoxLayout>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

namespace {

QImage picture(QWidget &widget)
{
    QImage image(widget.size(), QImage::Format_RGB32);
    widget.render(&image);
    return image;
}

TEST(ElidedLabel, ALongTextDoesNotWidenItsWindow)
{
    QWidget window;
    auto *row = new QHBoxLayout(&window);
    auto *label = new ElidedLabel;
    row->addWidget(label);
    label->setText(QString(255, QLatin1Char('W')));
    EXPECT_LT(window.minimumSizeHint().width(), 100);
    EXPECT_EQ(label->text().size(), 255) << "the text itself stays whole";
}

TEST(ElidedLabel, WhatDoesNotFitEndsInAnEllipsis)
{
    ElidedLabel label;
    label.setText(QStringLiteral("A rather long name for a topic"));
    label.resize(80, 24);
    const QImage cut = picture(label);
    label.setText(label.fontMetrics().elidedText(label.text(), Qt::ElideRight, 80));
    EXPECT_EQ(picture(label), cut);
    EXPECT_TRUE(label.text().endsWith(QChar(0x2026)));
}

TEST(ElidedLabel, AnAmpersandIsALetter)
{
    ElidedLabel with;
    with.setText(QStringLiteral("a&b"));
    with.resize(80, 24);
    ElidedLabel without;
    without.setText(QStringLiteral("ab"));
    without.resize(80, 24);
    EXPECT_NE(picture(with), picture(without));
}

} // namespace
