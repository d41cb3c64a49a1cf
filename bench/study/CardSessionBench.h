#pragma once

struct SizedSubject;
class SizedRows;

/// Measures opening a flash-card session in milliseconds, beside opening the file and reading the keys.
void benchOpeningSession(SizedRows &rows, const SizedSubject &subject);

/// Measures reaching the next card and reading its sides and mark, in microseconds, beside
/// reading the same fields by key.
void benchNextCard(SizedRows &rows, const SizedSubject &subject);

/// Measures marking a card, or taking its mark away, in microseconds, beside the one update.
void benchMark(SizedRows &rows, const SizedSubject &subject);
