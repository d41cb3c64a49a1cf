#pragma once

#include <QRectF>
#include <QString>

#include <array>
#include <cstdint>

class QFont;
class QPainter;
class QPalette;

/// What an answer selector shows, and how: from left to right the number, the choices, the flag.
/// All lengths are logical pixels.
struct SelectAnswerFace
{
    enum class Part : std::uint8_t { Number, A, B, C, Flag };
    enum class Focus : std::uint8_t {
        None,
        Trace, ///< the current question still, while something else has the keyboard
        Here,
    };

    static constexpr auto choices = std::to_array({Part::A, Part::B, Part::C});

    QString number;
    int correct = 1;
    int selected = 0; ///< 0 is none
    bool marked = false;
    bool graded = false;
    Focus focus = Focus::None;
    Part hovered = Part::Number; ///< lights up if a press would do something there

    /// Filled is what was given; a check mark is right, a cross wrong. The missing answer leaves its
    /// places dashed.
    void paint(QPainter &painter, const QSizeF &size, const QFont &font, const QPalette &palette) const;

    /// Room for the number 50.
    [[nodiscard]] static QSize size(const QFont &font);
    /// The whole area of a part. Together they fill \p size without gaps; one wider than size() has a wider number.
    [[nodiscard]] static QRectF area(Part part, const QSizeF &size, const QFont &font);
    [[nodiscard]] static Part partAt(const QPointF &place, const QSizeF &size, const QFont &font);
};

/// 1 to 3; 0 for what is no choice.
[[nodiscard]] int choiceOf(SelectAnswerFace::Part part);
