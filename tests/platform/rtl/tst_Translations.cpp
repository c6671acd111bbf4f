// The German translation: the texts users read change language; the filter expressions the
// grid writes for a data set do not; English comes back when asked for.

#include "filter/QDBFilterConsts.h"
#include "platform/db/DBConsts.h"
#include "platform/dbctrls/DBNavigator.h"
#include "platform/rtl/Translations.h"

#include <gtest/gtest.h>

using namespace qdb;

TEST(Translations, GermanChangesWhatUsersReadButNotTheFilters)
{
    const QString template1 = FilterConsts::ClauseTemplate(1);
    ASSERT_TRUE(InstallTranslations(QLocale(QLocale::German, QLocale::Germany)));
    EXPECT_EQ(DBConsts::SFieldNotFound().arg(QStringLiteral("Name")), QStringLiteral("Feld 'Name' nicht gefunden"));
    EXPECT_EQ(TDBNavigator::DefaultHint(nbFirst), QStringLiteral("Erster Datensatz"));
    EXPECT_EQ(FilterConsts::ClauseCaption(fcContains), QStringLiteral("enthält"));
    EXPECT_EQ(FilterConsts::ClauseTemplate(1), template1);
    EXPECT_EQ(template1, QStringLiteral("%0:s LIKE '%2:s%1:s%2:s'"));

    EXPECT_FALSE(InstallTranslations(QLocale(QLocale::Swahili))); // none: English again
    EXPECT_EQ(TDBNavigator::DefaultHint(nbFirst), QStringLiteral("First record"));
}
