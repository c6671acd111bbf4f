#include "IniFiles.h"

#include "Conversions.h"
#include "Exceptions.h"

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>

namespace qdb {

namespace {

bool sameName(const QString &a, const QString &b)
{
    return QString::compare(a, b, Qt::CaseInsensitive) == 0;
}

bool hasLineBreak(const QString &s)
{
    return s.contains(QLatin1Char('\n')) || s.contains(QLatin1Char('\r'));
}

QString decode(const QByteArray &bytes)
{
    QByteArray data = bytes;
    if (data.startsWith("\xEF\xBB\xBF"))
        data.remove(0, 3);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8(data);
    if (utf8.hasError()) // not UTF-8: an older file in a single-byte code page
        text = QString::fromLatin1(data);
    return text;
}

#ifdef Q_OS_WIN
const char *const lineEnd = "\r\n";
#else
const char *const lineEnd = "\n";
#endif

} // namespace

// ---- TCustomIniFile ----

void TCustomIniFile::ReadSectionValues(const QString &section, TStrings &lines) const
{
    TStringList names;
    ReadSection(section, names);
    lines.BeginUpdate();
    lines.Clear();
    for (const QString &name : names)
        lines.Add(name + QLatin1Char('=') + ReadString(section, name, QString()));
    lines.EndUpdate();
}

bool TCustomIniFile::SectionExists(const QString &section) const
{
    TStringList names;
    ReadSection(section, names);
    return names.Count() > 0;
}

bool TCustomIniFile::ValueExists(const QString &section, const QString &ident) const
{
    TStringList names;
    ReadSection(section, names);
    return names.IndexOf(ident) >= 0;
}

int TCustomIniFile::ReadInteger(const QString &section, const QString &ident, int defaultValue) const
{
    return StrToIntDef(ReadString(section, ident, QString()), defaultValue);
}

void TCustomIniFile::WriteInteger(const QString &section, const QString &ident, int value)
{
    WriteString(section, ident, QString::number(value));
}

bool TCustomIniFile::ReadBool(const QString &section, const QString &ident, bool defaultValue) const
{
    return ReadInteger(section, ident, defaultValue ? 1 : 0) != 0;
}

void TCustomIniFile::WriteBool(const QString &section, const QString &ident, bool value)
{
    WriteString(section, ident, value ? QStringLiteral("1") : QStringLiteral("0"));
}

double TCustomIniFile::ReadFloat(const QString &section, const QString &ident, double defaultValue) const
{
    return StrToFloatDef(ReadString(section, ident, QString()), defaultValue);
}

void TCustomIniFile::WriteFloat(const QString &section, const QString &ident, double value)
{
    WriteString(section, ident, FloatToStr(value));
}

// ---- TIniFile ----

TIniFile::TIniFile(const QString &fileName) : TCustomIniFile(fileName)
{
    load();
}

TIniFile::~TIniFile()
{
    if (dirty_) {
        try {
            save();
        } catch (const Exception &) {
            // nowhere to report it from a destructor; UpdateFile is the checked way
        }
    }
}

void TIniFile::load()
{
    QFile file(FileName());
    if (!file.open(QIODevice::ReadOnly))
        return; // a missing or unreadable file reads as empty
    const QString text = decode(file.readAll());
    sections_.append(Section{});
    for (QStringView line : QStringView(text).split(QLatin1Char('\n'))) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        const QStringView trimmed = line.trimmed();
        if (trimmed.startsWith(QLatin1Char('[')) && trimmed.lastIndexOf(QLatin1Char(']')) > 1) {
            const QString name = trimmed.mid(1, trimmed.lastIndexOf(QLatin1Char(']')) - 1).trimmed().toString();
            if (!name.isEmpty()) {
                sections_.append(Section{name, {}});
                continue;
            }
        }
        const qsizetype eq = line.indexOf(QLatin1Char('='));
        const bool comment = trimmed.startsWith(QLatin1Char(';')) || trimmed.startsWith(QLatin1Char('#'));
        const QString name = eq < 0 || comment ? QString() : line.left(eq).trimmed().toString();
        if (name.isEmpty())
            sections_.last().lines.append(Line{QString(), line.toString(), QString()});
        else
            sections_.last().lines.append(Line{name, line.mid(eq + 1).toString(), line.toString()});
    }
    // The split leaves one empty piece after a final line break.
    QList<Line> &last = sections_.last().lines;
    if (!last.isEmpty() && !last.last().isValue() && last.last().value.isEmpty() && text.endsWith(QLatin1Char('\n')))
        last.removeLast();
}

void TIniFile::save()
{
    QByteArray out;
    const QByteArray eol(lineEnd);
    for (const Section &s : std::as_const(sections_)) {
        if (!s.name.isEmpty())
            out += '[' + s.name.toUtf8() + ']' + eol;
        for (const Line &l : s.lines)
            out += (!l.isValue()       ? l.value.toUtf8()
                    : !l.raw.isNull() ? l.raw.toUtf8()
                                      : l.name.toUtf8() + '=' + l.value.toUtf8())
                + eol;
    }
    QSaveFile file(FileName());
    if (!file.open(QIODevice::WriteOnly) || file.write(out) != out.size() || !file.commit())
        throw EIniFileException(QCoreApplication::translate("qdb", "Unable to write to %1: %2")
                                    .arg(FileName(), file.errorString()));
    dirty_ = false;
}

void TIniFile::changed()
{
    dirty_ = true;
    if (!cacheUpdates_)
        save();
}

void TIniFile::UpdateFile()
{
    if (dirty_)
        save();
}

void TIniFile::DiscardUpdates()
{
    sections_.clear();
    load();
    dirty_ = false;
}

const TIniFile::Section *TIniFile::findSection(const QString &name) const
{
    if (name.isEmpty())
        return nullptr;
    for (const Section &s : sections_)
        if (sameName(s.name, name))
            return &s;
    return nullptr;
}

TIniFile::Section *TIniFile::findSection(const QString &name)
{
    return const_cast<Section *>(std::as_const(*this).findSection(name));
}

const TIniFile::Line *TIniFile::findLine(const Section &s, const QString &ident)
{
    for (const Line &l : s.lines)
        if (l.isValue() && sameName(l.name, ident))
            return &l;
    return nullptr;
}

QString TIniFile::ReadString(const QString &section, const QString &ident, const QString &defaultValue) const
{
    const Section *s = findSection(section);
    const Line *l = s ? findLine(*s, ident) : nullptr;
    return l ? l->value : defaultValue;
}

void TIniFile::WriteString(const QString &section, const QString &ident, const QString &value)
{
    const QString name = ident.trimmed();
    if (section.trimmed().isEmpty() || hasLineBreak(section) || name.isEmpty() || name.contains(QLatin1Char('='))
        || hasLineBreak(name) || name.startsWith(QLatin1Char(';')) || name.startsWith(QLatin1Char('#'))
        || name.startsWith(QLatin1Char('[')))
        throw EIniFileException(QCoreApplication::translate("qdb", "Invalid name '%1' in section '%2' of %3")
                                    .arg(ident, section, FileName()));
    if (hasLineBreak(value))
        throw EIniFileException(QCoreApplication::translate("qdb", "The value of '%1' in section '%2' contains a line break")
                                    .arg(ident, section));
    Section *s = findSection(section);
    if (!s) {
        if (sections_.isEmpty())
            sections_.append(Section{});
        QList<Line> &prev = sections_.last().lines;
        if (!prev.isEmpty() && !(prev.last().value.trimmed().isEmpty() && !prev.last().isValue()))
            prev.append(Line{QString(), QString(), QString()}); // a blank line between sections
        sections_.append(Section{section.trimmed(), {}});
        s = &sections_.last();
    }
    if (Line *l = const_cast<Line *>(findLine(*s, name))) {
        if (l->value == value)
            return;
        l->value = value;
        l->raw.clear();
    } else {
        // After the section's last value, before trailing blank lines and comments.
        qsizetype at = s->lines.size();
        while (at > 0 && !s->lines[at - 1].isValue())
            --at;
        if (at == 0)
            at = s->lines.size();
        s->lines.insert(at, Line{name, value, QString()});
    }
    changed();
}

void TIniFile::ReadSection(const QString &section, TStrings &names) const
{
    names.BeginUpdate();
    names.Clear();
    if (const Section *s = findSection(section))
        for (const Line &l : s->lines)
            if (l.isValue())
                names.Add(l.name);
    names.EndUpdate();
}

void TIniFile::ReadSections(TStrings &sections) const
{
    sections.BeginUpdate();
    sections.Clear();
    for (const Section &s : sections_)
        if (!s.name.isEmpty())
            sections.Add(s.name);
    sections.EndUpdate();
}

void TIniFile::ReadSectionValues(const QString &section, TStrings &lines) const
{
    lines.BeginUpdate();
    lines.Clear();
    if (const Section *s = findSection(section))
        for (const Line &l : s->lines)
            if (l.isValue())
                lines.Add(l.name + QLatin1Char('=') + l.value);
    lines.EndUpdate();
}

void TIniFile::EraseSection(const QString &section)
{
    const qsizetype removed = sections_.removeIf([&](const Section &s) {
        return !s.name.isEmpty() && sameName(s.name, section);
    });
    if (removed > 0)
        changed();
}

void TIniFile::DeleteKey(const QString &section, const QString &ident)
{
    Section *s = findSection(section);
    if (!s)
        return;
    const qsizetype removed =
        s->lines.removeIf([&](const Line &l) { return l.isValue() && sameName(l.name, ident.trimmed()); });
    if (removed > 0)
        changed();
}

bool TIniFile::SectionExists(const QString &section) const
{
    return findSection(section) != nullptr;
}

bool TIniFile::ValueExists(const QString &section, const QString &ident) const
{
    const Section *s = findSection(section);
    return s && findLine(*s, ident.trimmed());
}

} // namespace qdb
