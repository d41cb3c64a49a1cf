#pragma once

#include "study/StudyWizard.h"

#include <QString>

#include <cstdint>

class QCheckBox;
class QLabel;
class QRadioButton;
class QSlider;
class QVBoxLayout;

// What the study wizard and the session's options dialog have in common.

/// Lays \p slider down, with the values, steps and tick marks of \p range.
void setRange(QSlider *slider, const SliderRange &range);

/// Makes \p value as wide as its widest text, so that nothing moves while a slider does.
void reserveFor(QLabel *value, const QString &widest);

/// The controls that ask how flash cards are studied. The window that made them owns them.
struct FlashCardControls
{
    QLabel *question; ///< asks for the side
    QRadioButton *front;
    QRadioButton *back;
    QRadioButton *random;
    QCheckBox *flipper;   ///< on
    QSlider *seconds;     ///< can be moved while the flipper is on
    QLabel *secondsShown; ///< follows the slider
    QLabel *secondsUnit;
};

/// Gives \p controls their texts, the choices that they open with and their behaviour,
/// and adds them to \p rows in their two groups.
void addFlashCardGroups(QVBoxLayout &rows, const FlashCardControls &controls);

/// The viewing order that \p controls show, with \p random for a random one.
[[nodiscard]] std::int16_t viewOrderOf(const FlashCardControls &controls, std::int16_t random);
