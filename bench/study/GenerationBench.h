#pragma once

struct SizedSubject;
class SizedRows;

/// Measures making the first and the second test of a file, in milliseconds, beside the same
/// updates in one transaction through the engine's C API. Each side has a file of its own.
void benchGeneration(SizedRows &rows, const SizedSubject &subject);
