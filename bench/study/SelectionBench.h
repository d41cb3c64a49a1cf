#pragma once

struct SizedSubject;
class SizedRows;

/// Measures what the study wizard does when it is confirmed, in milliseconds, beside opening
/// the file and letting the engine count.
void benchSelections(SizedRows &rows, const SizedSubject &subject);
