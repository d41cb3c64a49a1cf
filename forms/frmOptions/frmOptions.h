#pragma once

#include "app/Module1.h"
#include "forms/StudyControls.h"
#include "study/StudyWizard.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class QSlider;
class QTabBar;

/// The study wizard: the style and the topics, then the style's options.
///
/// Opens with the same choices every time. The caller reads the program's
/// study settings when it has finished: cancelled is false only after a
/// successful "Study". Deletes itself when it closes.
class frmOptions final : public QDialog
{
    Q_OBJECT

public:
    explicit frmOptions(Module1 &module, QWidget *parent = nullptr);

private:
    QWidget *makeStylePage();
    QWidget *makeFlashCardPage();
    QWidget *makeTestPage();
    void layOut();
    void connectControls();
    void loadTopics();
    void showPage(int tab);
    void goForward();
    void confirm();
    void refuse(SelectionRefusal refusal);
    void showSliderValues();
    [[nodiscard]] FlashCardControls flashCardControls() const;
    [[nodiscard]] WizardChoices choices() const;

    QTabBar *tbsOptions;                   ///< style, options
    std::array<QWidget *, 4> picOptions;   ///< pages: style; (1) does not exist; flash cards; test
    std::array<QRadioButton *, 5> Option1; ///< flash cards, test; random, back, front
    QListWidget *List1;                    ///< the topics
    QCheckBox *Check1;                     ///< also every marked card
    QLabel *Label1;                        ///< asks for the side
    QCheckBox *Check2;                     ///< flipper on
    QSlider *Slider1;                      ///< flipper seconds
    QLabel *Label3;                        ///< Slider1's value
    QLabel *Label2;                        ///< its unit
    QLabel *Label4;                        ///< asks for the number of questions
    std::array<QSlider *, 3> Slider2;      ///< questions, multiple-choice percent, test minutes
    QLabel *Label6;                        ///< Slider2(0)'s value
    QLabel *Label5;                        ///< asks for the types of questions
    QLabel *Label7;                        ///< names the multiple-choice share
    QLabel *Label11;                       ///< multiple-choice share
    QLabel *Label15;                       ///< names the true-or-false share
    QLabel *Label13;                       ///< true-or-false share
    QCheckBox *Check3;                     ///< test timer on
    QLabel *Label9;                        ///< Slider2(2)'s value
    QLabel *Label8;                        ///< its unit
    std::array<QPushButton *, 3> cmdOK;    ///< cancel, previous, next or study

    Module1 &m_module;
};
