#include "IniFiles.h"

#include "Exceptions.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QSettings>

namespace qdb {

namespace {

std::unique_ptr<QSettings> openSettings(const QString &keyPath)
{
#ifdef Q_OS_WIN
    QString path = keyPath;
    path.replace(QLatin1Char('/'), QLatin1Char('\\'));
    if (!path.startsWith(QLatin1Char('\\')))
        path.prepend(QLatin1Char('\\'));
    return std::make_unique<QSettings>(QStringLiteral("HKEY_CURRENT_USER") + path, QSettings::NativeFormat);
#else
    // "\Software\Company\Product" becomes the organisation "Company" and application
    // "Product" of the user's native settings.
    QStringList parts = keyPath.split(QRegularExpression(QStringLiteral("[\\\\/]")), Qt::SkipEmptyParts);
    if (!parts.isEmpty() && parts.first().compare(QLatin1String("Software"), Qt::CaseInsensitive) == 0)
        parts.removeFirst();
    const QString organisation = parts.isEmpty() ? QStringLiteral("QDBGrid") : parts.takeFirst();
    const QString application = parts.isEmpty() ? organisation : parts.join(QLatin1Char('/'));
    return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope, organisation, application);
#endif
}

QString group(const QString &section)
{
    // A "/" would open a nested group; sections are one level.
    QString g = section;
    g.replace(QLatin1Char('/'), QLatin1Char('\\'));
    return g;
}

} // namespace

TRegistryIniFile::TRegistryIniFile(const QString &keyPath)
    : TCustomIniFile(keyPath), settings_(openSettings(keyPath))
{
}

TRegistryIniFile::~TRegistryIniFile() = default;

QString TRegistryIniFile::ReadString(const QString &section, const QString &ident, const QString &defaultValue) const
{
    const QVariant v = settings_->value(group(section) + QLatin1Char('/') + ident);
    return v.isValid() ? v.toString() : defaultValue;
}

void TRegistryIniFile::WriteString(const QString &section, const QString &ident, const QString &value)
{
    settings_->setValue(group(section) + QLatin1Char('/') + ident, value);
}

void TRegistryIniFile::ReadSection(const QString &section, TStrings &names) const
{
    names.BeginUpdate();
    names.Clear();
    settings_->beginGroup(group(section));
    for (const QString &key : settings_->childKeys())
        names.Add(key);
    settings_->endGroup();
    names.EndUpdate();
}

void TRegistryIniFile::ReadSections(TStrings &sections) const
{
    sections.BeginUpdate();
    sections.Clear();
    for (const QString &g : settings_->childGroups())
        sections.Add(g);
    sections.EndUpdate();
}

void TRegistryIniFile::EraseSection(const QString &section)
{
    settings_->remove(group(section));
}

void TRegistryIniFile::DeleteKey(const QString &section, const QString &ident)
{
    settings_->remove(group(section) + QLatin1Char('/') + ident);
}

bool TRegistryIniFile::SectionExists(const QString &section) const
{
    return !section.isEmpty() && settings_->childGroups().contains(group(section), Qt::CaseInsensitive);
}

bool TRegistryIniFile::ValueExists(const QString &section, const QString &ident) const
{
    return settings_->contains(group(section) + QLatin1Char('/') + ident);
}

void TRegistryIniFile::UpdateFile()
{
    settings_->sync();
    checkStatus();
}

void TRegistryIniFile::checkStatus() const
{
    if (settings_->status() == QSettings::AccessError)
        throw EIniFileException(QCoreApplication::translate("qdb", "Unable to write to %1").arg(FileName()));
}

} // namespace qdb
