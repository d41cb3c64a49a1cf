#pragma once

#include "study/CardSelection.h"
#include "study/StudySettings.h"

#include <filesystem>
#include <optional>
#include <vector>

/// What a slider of the wizard can say.
struct SliderRange
{
    int least;
    int most;
    int start;
    int step;     ///< by an arrow key
    int pageStep; ///< by a click beside the handle
    int tick;     ///< between two tick marks
};

inline constexpr SliderRange flipperSeconds{.least = 1, .most = 20, .start = 5, .step = 1, .pageStep = 4, .tick = 1};
inline constexpr SliderRange questionCounts{.least = 5, .most = 50, .start = 20, .step = 1, .pageStep = 5, .tick = 1};
inline constexpr SliderRange choicePercents{.least = 0, .most = 100, .start = 60, .step = 1, .pageStep = 5, .tick = 10};
inline constexpr SliderRange timerMinutes{.least = 2, .most = 50, .start = 20, .step = 1, .pageStep = 5, .tick = 2};

/// The state of the wizard's controls. The defaults are what it opens with.
struct WizardChoices
{
    StudyStyle style = StudyStyle::FlashCards;
    std::vector<int> topics{}; ///< keys of the selected topics, in list order
    bool withMarked = false;
    std::int16_t viewOrder = ViewOrder::front;
    bool flipperOn = false;
    int flipperSeconds = ::flipperSeconds.start;
    int questionCount = questionCounts.start;
    int multipleChoicePercent = choicePercents.start;
    bool timerOn = false;
    int timerMinutes = ::timerMinutes.start;
};

/// What the settings hold while the wizard is open.
void beginStudySetup(StudySettings &settings);

/// Confirms the wizard: builds the card query, counts its cards in \p subject,
/// and fills \p settings. The number of questions is lowered to the number of
/// cards. On a refusal settings.cancelled stays true.
[[nodiscard]] std::optional<SelectionRefusal> confirmStudySetup(const std::filesystem::path &subject,
                                                                const WizardChoices &choices, StudySettings &settings);
