#include "Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QList>
#include <QPointer>
#include <QTranslator>

namespace qdb {

namespace {

QList<QPointer<QTranslator>> &installed()
{
    static QList<QPointer<QTranslator>> translators;
    return translators;
}

bool install(const QLocale &locale, const QString &name, const QString &folder)
{
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (!translator->load(locale, name, QStringLiteral("_"), folder) || !QCoreApplication::installTranslator(translator)) {
        delete translator;
        return false;
    }
    installed() << translator;
    return true;
}

} // namespace

bool InstallTranslations(const QLocale &locale)
{
    // Another language replaces the one installed before.
    for (QTranslator *translator : std::as_const(installed()))
        delete translator; // which removes it from the application
    installed().clear();
    install(locale, QStringLiteral("qtbase"), QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    return install(locale, QStringLiteral("qdbgrid"), QStringLiteral(":/qdbgrid/i18n"));
}

} // namespace qdb
