#pragma once

struct SizedSubject;
class SizedRows;

// With tests of 50 questions. Each side has a file of its own.

/// Measures opening a test, in milliseconds, beside opening the file, the updates of its test in
/// one transaction, and reading its questions.
void benchOpeningTest(SizedRows &rows, const SizedSubject &subject);

/// Measures composing all questions, beside reading the cards that they are made of, and marking
/// the cards of all questions, beside the updates in one transaction; both in microseconds.
void benchQuestions(SizedRows &rows, const SizedSubject &subject);
