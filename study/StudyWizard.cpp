#include "study/StudyWizard.h"

#include "store/Statements.h"
#include "store/SubjectReading.h"

#include <algorithm>

namespace {

int timeSettingOf(const WizardChoices &choices)
{
    switch (choices.style) {
    case StudyStyle::FlashCards: return choices.flipperOn ? choices.flipperSeconds : 0;
    case StudyStyle::Test: return choices.timerOn ? choices.timerMinutes : 0;
    }
    return 0;
}

} // namespace

void beginStudySetup(StudySettings &settings)
{
    settings.cancelled = true;
    settings.style = StudyStyle::FlashCards;
}

std::optional<SelectionRefusal> confirmStudySetup(const std::filesystem::path &subject, const WizardChoices &choices,
                                                  StudySettings &settings)
{
    if (choices.topics.empty() && !choices.withMarked) {
        return SelectionRefusal::NothingChosen;
    }
    settings.cardQuery = selectionQuery(choices.topics, choices.withMarked);
    settings.style = choices.style;
    settings.viewOrder = choices.viewOrder;
    settings.timeSetting = static_cast<std::int16_t>(timeSettingOf(choices));
    settings.multipleChoicePercent = static_cast<std::int16_t>(choices.multipleChoicePercent);

    const int count = countCards(subject, cardQueryCheck(settings.cardQuery));
    settings.questionCount = static_cast<std::int16_t>(choices.questionCount);
    if (const auto refusal = checkCardCount(count)) {
        return refusal;
    }
    settings.questionCount = static_cast<std::int16_t>(std::min(choices.questionCount, count));
    settings.cancelled = false;
    return std::nullopt;
}
