#pragma once

struct SizedSubject;
class SizedRows;

/// Measures the first shuffle of a session and the next one, in milliseconds, beside the same
/// updates in one transaction through the engine's C API. Each side has a file of its own.
void benchShuffle(SizedRows &rows, const SizedSubject &subject);
