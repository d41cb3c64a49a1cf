#pragma once

#include <cstddef>
#include <string>

// Values to write again and again: the engine writes nothing where a row would stay as it is.

class ChangingNumber
{
public:
    /// From 0 to 1, another one each time.
    float next() { return m_value = m_value < 1 ? m_value + 0.001F : 0; }

private:
    float m_value = 0;
};

class ChangingText
{
public:
    explicit ChangingText(std::size_t size)
        : m_value(size, 'a')
    {
    }

    /// Of the same length, another one each time.
    const std::string &next()
    {
        m_value.front() = m_value.front() == 'z' ? 'a' : 'z';
        return m_value;
    }

    [[nodiscard]] const std::string &latest() const { return m_value; }

private:
    std::string m_value;
};
