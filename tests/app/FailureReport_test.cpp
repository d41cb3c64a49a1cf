#include "app/FailureReport.h"
#include "platform/SettingsStore.h"
#include "platform/help/HelpViewer.h"
#include "store/StoreError.h"
#include "study/CardSelection.h"

#include <gtest/gtest.h>
#include <set>

namespace {

TEST(FailureReport, NamesTheFileAndTheEnginesNumberAndWords)
{
    const StoreError failure(StoreError::Reason::Damaged, 11, "/a/History.crl", "database disk image is malformed");
    const FailureReport report = describeFailure(failure);
    EXPECT_TRUE(report.text.contains(QStringLiteral("/a/History.crl")));
    EXPECT_TRUE(report.text.contains(QStringLiteral("damaged")));
    EXPECT_EQ(report.details.toStdString(), "Error 11: database disk image is malformed");
}

TEST(FailureReport, EveryReasonHasWordsOfItsOwnThatNameTheFile)
{
    std::set<QString> texts;
    const auto last = static_cast<int>(StoreError::Reason::Engine);
    for (int reason = 0; reason <= last; ++reason) {
        const StoreError failure(static_cast<StoreError::Reason>(reason), 0, "/a/History.crl", "why");
        const FailureReport report = describeFailure(failure);
        EXPECT_TRUE(report.text.contains(QStringLiteral("/a/History.crl"))) << reason;
        EXPECT_TRUE(texts.insert(report.text).second) << "the same words twice, reason " << reason;
        EXPECT_TRUE(report.details.startsWith(QStringLiteral("Error 101"))) << report.details.toStdString();
    }
}

TEST(FailureReport, AFileNameWithAPercentSignIsShownAsItStands)
{
    const StoreError failure(StoreError::Reason::NotFound, 14, "/a/100%1 %2.crl", "unable to open");
    EXPECT_TRUE(describeFailure(failure).text.contains(QStringLiteral("/a/100%1 %2.crl")));
}

TEST(FailureReport, ASettingThatIsNoNumberIsNamedWithItsFile)
{
    const SettingTypeMismatch failure(QStringLiteral("Settings"), QStringLiteral("Color"), QStringLiteral("pink"),
                                      QStringLiteral("/home/me/Cramlet.conf"));
    const FailureReport report = describeFailure(failure);
    for (const char *part : {"Settings", "Color", "pink", "/home/me/Cramlet.conf"}) {
        EXPECT_TRUE(report.text.contains(QString::fromLatin1(part))) << part;
    }
    EXPECT_TRUE(report.details.contains(QStringLiteral("type mismatch")));
}

TEST(FailureReport, HelpThatIsMissingSpeaksForItself)
{
    const FailureReport report = describeFailure(HelpUnavailable(QStringLiteral("Install Cramlet again.")));
    EXPECT_EQ(report.text, QStringLiteral("Install Cramlet again."));
    EXPECT_TRUE(report.details.startsWith(QStringLiteral("Error 10003")));
}

TEST(FailureReport, CardsThatAreGoneWhenAStudyBeginsAreSaidToBe)
{
    const FailureReport report = describeFailure(CardsGone("none are left"));
    EXPECT_TRUE(report.text.contains(QStringLiteral("deleted meanwhile")));
    EXPECT_TRUE(report.text.contains(QStringLiteral("Study...")));
    EXPECT_EQ(report.details, QStringLiteral("Error 10004: none are left"));
}

TEST(FailureReport, AnyOtherFailureKeepsItsOwnWords)
{
    EXPECT_TRUE(describeFailure(std::runtime_error("no luck")).details.contains(QStringLiteral("no luck")));
}

} // namespace
