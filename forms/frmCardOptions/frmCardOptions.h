#pragma once

#include "app/Module1.h"
#include "forms/StudyControls.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QKeyEvent;
class QLabel;
class QPushButton;
class QRadioButton;
class QSlider;

/// The flash-card options during a session: the viewing order and the flipper.
///
/// Opens with the same choices every time, whatever the session uses. OK writes them
/// into the program's study settings; Cancel and Escape set cancelled there. The close
/// box does neither. The caller owns it, clears cancelled before, and reads it afterwards.
class frmCardOptions final : public QDialog
{
    Q_OBJECT

public:
    explicit frmCardOptions(Module1 &module, QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void layOut();
    void confirm();
    void cancel();
    [[nodiscard]] FlashCardControls flashCardControls() const;

    QLabel *Label1;                        ///< asks for the side
    std::array<QRadioButton *, 3> Option1; ///< front, back, random
    QCheckBox *Check1;                     ///< flipper on
    QSlider *Slider1;                      ///< flipper seconds
    QLabel *Label3;                        ///< Slider1's value
    QLabel *Label2;                        ///< its unit
    std::array<QPushButton *, 2> Command1; ///< OK, Cancel

    Module1 &m_module;
};
