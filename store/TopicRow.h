#pragma once

#include "store/Statements.h"
#include "store/StoreError.h"
#include "store/SubjectFile.h"
#include "store/SubjectStore.h"

// Private to store/: what reading and changing one topic begin with.

/// The set of one topic, on its row. Throws StoreError::RowGone if there is none;
/// \p subject is the path that \p store was opened with.
[[nodiscard]] inline TopicSet openTopic(SubjectStore &store, const std::filesystem::path &subject, int topic)
{
    TopicSet found = store.openRecordSet(topicByKey(topic));
    if (found.recordCount() == 0) {
        throw StoreError(StoreError::Reason::RowGone, 0, shownPath(subject), "the topic was deleted meanwhile");
    }
    return found;
}
