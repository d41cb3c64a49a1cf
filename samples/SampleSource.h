#pragma once

#include <QString>

#include <stdexcept>
#include <vector>

/// A card of a sample: HTML of both sides, neither blank.
struct SampleCard
{
    QString front;
    QString back;
};

/// A topic of a sample: its name, its notes as HTML, at least one card.
struct SampleTopic
{
    QString name;
    QString notes;
    std::vector<SampleCard> cards;
};

/// A source that is not as README.md has it. what() is "file:line: reason".
class SampleError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Reads the source of a sample; at least one topic. Throws SampleError.
[[nodiscard]] std::vector<SampleTopic> readSampleSource(const QString &path);
