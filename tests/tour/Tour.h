#pragma once

#include "app/Module1.h"
#include "tests/tour/Album.h"

#include <QDir>

class QWidget;
class frmFlashCard;
class frmTest;

/// The tour: the main job of a learner, done with real clicks and keys on the
/// real windows and the sample subjects, without a screen. It checks what it
/// sees on the way, throws Surprise if that is not what it expects, and leaves
/// a picture of each window.
class Tour
{
public:
    /// Pictures go to \p plan's folders. \p home takes the tour's own subjects:
    /// copies of the samples, and a new one.
    Tour(Album::Plan plan, const QString &home);

    /// All of it.
    void play();

private:
    // Studying.
    void chooseSubject();
    void readNotes();
    void setUpStudy();
    void turnCards();
    void changeCardOptions(frmFlashCard &session);
    void shuffleCards(frmFlashCard &session);
    void takeTest();
    void setUpTest();
    void answerQuestions(frmTest &test);
    void gradeTest(frmTest &test);

    // Writing.
    void beginSubject();
    void createTopic();
    void writeNotes();
    void lookAtObjects();
    void writeCards();
    void readHelp();
    void leave();

    QDir m_home;
    Album m_album;
    Module1 m_module;
};
