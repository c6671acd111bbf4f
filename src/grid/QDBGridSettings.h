#pragma once

#include "QDBGridTypes.h"

#include "platform/rtl/Strings.h"

#include <QObject>

namespace qdb {

class TCustomIniFile;
class TQCustomDBGrid;

// Where layouts go when a grid's settings name no file of their own: an INI file (empty:
// the executable's path with ".ini") and a key of the system's settings store.
QString &DefaultIniFileName();
QString &DefaultRegistryKey();
// The key DefaultRegistryKey starts with; while it is unchanged, the executable's name
// takes the place of its last part.
QString OriginalRegistryKey();

// A grid's layout as name=value lines (columns, order, lines per row, switches, filters),
// kept in one section of an INI file or of the system's settings store. Published as the
// grid's Settings.
class TQDBGridSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(qdb::TStrings *Layout READ GetLayout STORED false)
    Q_PROPERTY(qdb::TQSettingsOptions Options READ GetOptions WRITE SetOptions)
    Q_PROPERTY(bool Active READ GetActive WRITE SetActive)
    Q_PROPERTY(bool ExeName READ GetExeName WRITE SetExeName)
    Q_PROPERTY(bool IniFile READ GetIniFile WRITE SetIniFile)
    Q_PROPERTY(QString FileName READ GetFileName WRITE SetFileName)
    Q_PROPERTY(QString Section READ GetSection WRITE SetSection)
    Q_CLASSINFO("default:Options", "[soLoadLayout,soSaveLayout]")
    Q_CLASSINFO("default:Active", "false")
    Q_CLASSINFO("default:ExeName", "true")
    Q_CLASSINFO("default:IniFile", "false")
    Q_CLASSINFO("default:FileName", "")

public:
    explicit TQDBGridSettings(TQCustomDBGrid *grid);
    ~TQDBGridSettings() override;

    TQCustomDBGrid *Grid() const { return grid_; }
    TQSettingsOptions GetOptions() const { return options_; }
    void SetOptions(TQSettingsOptions options) { options_ = options; }
    void SwitchOptions(TQSettingsOptions options, bool on);
    // The grid loads its layout as it gets its data and saves it as it loses it.
    bool GetActive() const { return active_; }
    // Switched on while the data is there, the layout is loaded once the event loop comes
    // round: the properties set with it are in place by then.
    void SetActive(bool on);
    bool GetExeName() const { return exeName_; }
    void SetExeName(bool on) { exeName_ = on; }
    // An INI file, else the system's settings store.
    bool GetIniFile() const { return iniFile_; }
    void SetIniFile(bool on) { iniFile_ = on; }
    QString GetFileName() const { return fileName_; }
    void SetFileName(const QString &name) { fileName_ = name; }
    // The section given, else the default one; the default is kept as "none given".
    QString GetSection() const;
    void SetSection(const QString &section);
    Q_INVOKABLE bool IsSectionStored() const { return !section_.isEmpty(); }

    QString GetDefaultFileName() const;
    // The grid's name, after its window's name and a dot where the window has one.
    QString GetDefaultSection() const;
    // Makes the store the settings name when `ini` is null: the caller frees it then
    // (true). A store given is left as it is (false).
    bool CreateIniFile(TCustomIniFile *&ini) const;

    // Builds the lines from the grid's present state and tells OnLayout.
    TStrings *GetLayout();
    // Takes a copy of `value` (when given) and applies the lines to the grid; a line that
    // is missing or does not read leaves its setting as it is.
    void SetLayout(const TStrings *value);
    void ApplyLayout() { SetLayout(nullptr); }

    // With a null store the settings open their own for the call. Errors of the store (a
    // file that cannot be written) go to the caller; the grid is left as it was.
    void ReadLayout(TCustomIniFile *ini = nullptr);
    void StoreLayout(TCustomIniFile *ini = nullptr);
    void LoadLayout(TCustomIniFile *ini = nullptr);
    void SaveLayout(TCustomIniFile *ini = nullptr);
    void EraseLayout(TCustomIniFile *ini = nullptr);
    bool LayoutExists(TCustomIniFile *ini = nullptr);
    // The automatic load and save, with the user's own choice of them (soUserSettings)
    // travelling in the stored layout.
    void AutoLoadLayout();
    void AutoSaveLayout();

private:
    // Runs `use` on the store given, else on one of our own for the call.
    template <typename F>
    void withStore(TCustomIniFile *ini, F &&use) const;
    void buildLayout();

    TQCustomDBGrid *grid_;
    TStringList *layout_;
    TQSettingsOptions options_{soLoadLayout, soSaveLayout};
    bool active_ = false;
    bool exeName_ = true;
    bool iniFile_ = false;
    QString fileName_;
    QString section_;
};

} // namespace qdb
