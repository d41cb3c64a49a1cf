#include "forms/frmTest/QuestionSheet.h"

#include "forms/frmTest/SharedHeight.h"
#include "platform/PaperSheet.h"
#include "platform/RichTextBox.h"
#include "platform/Twips.h"

#include <QBoxLayout>
#include <QLabel>
#include <QTextDocument>
#include <QtMath>

#include <algorithm>
#include <vector>

namespace {

constexpr int questionWeight = 5; ///< beside 3 for each of three choices
constexpr int choiceWeight = 3;
constexpr int tall = 20'000; ///< pixels: a card on which a text that could be shown has no scroll bar

} // namespace

QuestionSheet::QuestionSheet(const std::array<RichTextBox *, 4> &boxes, const std::array<QLabel *, 3> &captions,
                             QWidget *parent)
    : QWidget(parent)
    , m_cards{}
    , m_boxes(boxes)
    , m_captions(captions)
{
    for (std::size_t box = 0; box < boxes.size(); ++box) {
        auto *card = new PaperSheet(this);
        card->setShape(PaperSheet::Shape::IndexCard);
        auto *onCard = new QHBoxLayout(card);
        onCard->setContentsMargins({});
        onCard->setSpacing(toPixels(60));
        if (box > 0) {
            const int edge = toPixels(90);
            card->setContentsMargins(2 * edge, edge, edge + PaperSheet::shadowDepth, edge + PaperSheet::shadowDepth);
            onCard->addWidget(captions.at(box - 1));
        }
        onCard->addWidget(boxes.at(box), 1);
        boxes.at(box)->setFrameShape(QFrame::NoFrame);
        m_cards.at(box) = card;
    }
}

void QuestionSheet::setChoiceVisible(std::size_t choice, bool visible)
{
    for (QWidget *part :
         {static_cast<QWidget *>(m_cards.at(choice + 1)), static_cast<QWidget *>(m_boxes.at(choice + 1)),
          static_cast<QWidget *>(m_captions.at(choice))}) {
        part->setVisible(visible);
    }
}

void QuestionSheet::makeRoom()
{
    for (std::size_t box = 0; box < m_cards.size(); ++box) {
        if (!m_cards.at(box)->isHidden()) {
            m_boxes.at(box)->setCentered({}); // in a tall card it would be work for nothing
            m_cards.at(box)->resize(width(), tall);
        }
    }
}

/// What the card of \p box needs; the card is as wide as it will be, and tall.
int QuestionSheet::heightToShowAll(std::size_t box) const
{
    PaperSheet &card = *m_cards.at(box);
    card.layout()->activate(); // the text is broken at the box's width
    const QMargins edge = card.contentsMargins();
    return qCeil(m_boxes.at(box)->document()->size().height()) + edge.top() + edge.bottom();
}

void QuestionSheet::arrange()
{
    int captionWidth = 0;
    for (const QLabel *caption : m_captions) {
        captionWidth = std::max(captionWidth, caption->sizeHint().width());
    }
    for (QLabel *caption : m_captions) {
        caption->setMinimumWidth(captionWidth); // so that the choices begin in one line
    }

    makeRoom();
    const int gap = toPixels(60);
    std::vector<std::size_t> seen;
    std::vector<HeightWish> wishes;
    for (std::size_t box = 0; box < m_cards.size(); ++box) {
        if (!m_cards.at(box)->isHidden()) {
            seen.push_back(box);
            wishes.push_back({heightToShowAll(box) + gap, box == 0 ? questionWeight : choiceWeight});
        }
    }
    int top = 0;
    const std::vector<int> heights = shareHeight(height() + gap, wishes);
    for (std::size_t i = 0; i < seen.size(); ++i) {
        m_cards.at(seen[i])->setGeometry(0, top, width(), heights[i] - gap);
        m_boxes.at(seen[i])->setCentered(seen[i] == 0 ? Qt::Horizontal | Qt::Vertical : Qt::Orientations(Qt::Vertical));
        top += heights[i];
    }
}

void QuestionSheet::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange();
}
