#pragma once

#include "Strings.h"

#include <QList>
#include <QString>

#include <memory>

class QSettings;

namespace qdb {

// A store of name=value pairs grouped in sections. Section and value names compare
// without case.
class TCustomIniFile
{
public:
    explicit TCustomIniFile(QString fileName) : fileName_(std::move(fileName)) {}
    virtual ~TCustomIniFile() = default;
    TCustomIniFile(const TCustomIniFile &) = delete;
    TCustomIniFile &operator=(const TCustomIniFile &) = delete;

    const QString &FileName() const { return fileName_; }

    virtual QString ReadString(const QString &section, const QString &ident, const QString &defaultValue) const = 0;
    virtual void WriteString(const QString &section, const QString &ident, const QString &value) = 0;
    virtual void ReadSection(const QString &section, TStrings &names) const = 0;
    virtual void ReadSections(TStrings &sections) const = 0;
    virtual void EraseSection(const QString &section) = 0;
    virtual void DeleteKey(const QString &section, const QString &ident) = 0;
    // Writes pending changes; stores that write at once do nothing.
    virtual void UpdateFile() {}

    // Fills `lines` with "name=value" for every value of the section.
    virtual void ReadSectionValues(const QString &section, TStrings &lines) const;
    virtual bool SectionExists(const QString &section) const;
    virtual bool ValueExists(const QString &section, const QString &ident) const;

    // Typed reads give the default when the value is missing or not of the type.
    int ReadInteger(const QString &section, const QString &ident, int defaultValue) const;
    void WriteInteger(const QString &section, const QString &ident, int value);
    bool ReadBool(const QString &section, const QString &ident, bool defaultValue) const;
    void WriteBool(const QString &section, const QString &ident, bool value);
    double ReadFloat(const QString &section, const QString &ident, double defaultValue) const;
    void WriteFloat(const QString &section, const QString &ident, double value);

private:
    QString fileName_;
};

// A plain "[Section]" / "name=value" text file in UTF-8. Values are kept exactly as written:
// everything after the first "=" up to the end of the line, blanks, ";", "=" and backslashes
// included. Lines starting with ";" or "#" are comments; they and any line the reader does
// not understand are kept when the file is written again. Every write goes to disk at once
// and raises EIniFileException when the file cannot be written.
class TIniFile : public TCustomIniFile
{
public:
    explicit TIniFile(const QString &fileName);
    ~TIniFile() override;

    QString ReadString(const QString &section, const QString &ident, const QString &defaultValue) const override;
    void WriteString(const QString &section, const QString &ident, const QString &value) override;
    void ReadSection(const QString &section, TStrings &names) const override;
    void ReadSections(TStrings &sections) const override;
    void ReadSectionValues(const QString &section, TStrings &lines) const override;
    void EraseSection(const QString &section) override;
    void DeleteKey(const QString &section, const QString &ident) override;
    bool SectionExists(const QString &section) const override;
    bool ValueExists(const QString &section, const QString &ident) const override;

    // Holds writes in memory until UpdateFile (or the destructor, which cannot report
    // errors); for writing many values at once.
    void SetCacheUpdates(bool on) { cacheUpdates_ = on; }
    void UpdateFile() override;
    // Forgets the writes held: the values are the file's again.
    void DiscardUpdates();

private:
    struct Line
    {
        QString name;  // empty for comments and unparsed lines
        QString value; // or the raw text of such a line
        QString raw;   // the line as read, written back while the value is untouched
        bool isValue() const { return !name.isEmpty(); }
    };
    struct Section
    {
        QString name; // empty for the lines before the first section header
        QList<Line> lines;
    };

    void load();
    void save();
    void changed();
    const Section *findSection(const QString &name) const;
    Section *findSection(const QString &name);
    static const Line *findLine(const Section &s, const QString &ident);

    QList<Section> sections_;
    bool cacheUpdates_ = false;
    bool dirty_ = false;
};

// A store in the system's settings: the registry under HKEY_CURRENT_USER on Windows, the
// native configuration files elsewhere. The file name is a key path such as
// "\Software\Company\Product".
class TRegistryIniFile : public TCustomIniFile
{
public:
    explicit TRegistryIniFile(const QString &keyPath);
    ~TRegistryIniFile() override;

    QString ReadString(const QString &section, const QString &ident, const QString &defaultValue) const override;
    void WriteString(const QString &section, const QString &ident, const QString &value) override;
    void ReadSection(const QString &section, TStrings &names) const override;
    void ReadSections(TStrings &sections) const override;
    void EraseSection(const QString &section) override;
    void DeleteKey(const QString &section, const QString &ident) override;
    bool SectionExists(const QString &section) const override;
    bool ValueExists(const QString &section, const QString &ident) const override;
    void UpdateFile() override;

private:
    void checkStatus() const;
    std::unique_ptr<QSettings> settings_;
};

} // namespace qdb
