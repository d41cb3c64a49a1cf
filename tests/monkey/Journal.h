#pragma once

#include <QString>

#include <cstdint>

/// What the monkey did: a hash of everything, and the last events to read.
///
/// While it lives, a crash, a finding of a sanitizer and an event that takes longer than 20 seconds end the program
/// with the last events and the command that replays them on stderr. The environment's CRAMLET_TELL shows all events.
/// One at a time.
class Journal
{
public:
    Journal(unsigned seed, int events);
    Journal(const Journal &) = delete;
    Journal &operator=(const Journal &) = delete;
    ~Journal();

    void add(const QString &event);
    [[nodiscard]] std::uint64_t hash() const { return m_hash; }

    /// The last events, and how to replay them.
    static void tell();

private:
    std::uint64_t m_hash = 14695981039346656037U;
    int m_count = 0;
};
