#include "QDBGridSettings.h"

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include "filter/QDBGridFilter.h"

#include "platform/rtl/Conversions.h"
#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Format.h"
#include "platform/rtl/IniFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <memory>
#include <optional>

namespace qdb {

QString OriginalRegistryKey()
{
    return QStringLiteral("\\Software\\Quovra Software\\QDBGrid");
}

QString &DefaultIniFileName()
{
    static QString name;
    return name;
}

QString &DefaultRegistryKey()
{
    static QString key = OriginalRegistryKey();
    return key;
}

namespace {

int flag(bool on)
{
    return on ? 1 : 0;
}

// A switch of the layout: on only for "1"; a missing or unreadable value keeps `current`.
bool readFlag(const TStrings &layout, const QString &name, bool current)
{
    return StrToIntDef(layout.Values(name), flag(current)) == 1;
}

// The executable's file without the extension the system may give it.
QFileInfo executable()
{
    return QFileInfo(QCoreApplication::applicationFilePath());
}

QString withoutExtension(const QFileInfo &file)
{
    return file.suffix().isEmpty() ? file.fileName() : file.completeBaseName();
}

} // namespace

TQDBGridSettings::TQDBGridSettings(TQCustomDBGrid *grid)
    : QObject(grid), grid_(grid), layout_(new TStringList(this))
{
    RegisterSetType<TQSettingsOption>();
}

TQDBGridSettings::~TQDBGridSettings() = default;

void TQDBGridSettings::SwitchOptions(TQSettingsOptions options, bool on)
{
    options_ = on ? options_ + options : options_ - options;
}

void TQDBGridSettings::SetActive(bool on)
{
    if (on == active_)
        return;
    active_ = on;
    if (on)
        QMetaObject::invokeMethod(grid_, [grid = grid_] { grid->settingsActivated(); }, Qt::QueuedConnection);
}

QString TQDBGridSettings::GetSection() const
{
    return section_.isEmpty() ? GetDefaultSection() : section_;
}

void TQDBGridSettings::SetSection(const QString &section)
{
    section_ = section == GetDefaultSection() ? QString() : section;
}

QString TQDBGridSettings::GetDefaultFileName() const
{
    const QFileInfo exe = executable();
    if (iniFile_) {
        if (!DefaultIniFileName().isEmpty())
            return DefaultIniFileName();
        return exe.dir().filePath(withoutExtension(exe) + QStringLiteral(".ini"));
    }
    QString key = DefaultRegistryKey();
    const QString product = QStringLiteral("QDBGrid");
    if (exeName_ && key == OriginalRegistryKey())
        key.replace(key.indexOf(product), product.size(), withoutExtension(exe));
    return key;
}

QString TQDBGridSettings::GetDefaultSection() const
{
    if (!grid_ || grid_->objectName().isEmpty())
        return {};
    // The grid's window stands for the form that owns it.
    const QWidget *window = grid_->window();
    if (window && window != grid_ && !window->objectName().isEmpty())
        return window->objectName() + QLatin1Char('.') + grid_->objectName();
    return grid_->objectName();
}

bool TQDBGridSettings::CreateIniFile(TCustomIniFile *&ini) const
{
    if (ini)
        return false;
    const QString name = fileName_.isEmpty() ? GetDefaultFileName() : fileName_;
    if (iniFile_)
        ini = new TIniFile(name);
    else
        ini = new TRegistryIniFile(name);
    return true;
}

template <typename F>
void TQDBGridSettings::withStore(TCustomIniFile *ini, F &&use) const
{
    std::unique_ptr<TCustomIniFile> own;
    if (CreateIniFile(ini))
        own.reset(ini);
    use(*ini);
}

// ---- the lines ----

void TQDBGridSettings::buildLayout()
{
    TStrings &lines = *layout_;
    lines.BeginUpdate();
    lines.Clear();
    if (options_.Contains(soUserSettings)) {
        lines.Add(Format("AutoLoadLayout=%d", {flag(options_.Contains(soLoadLayout))}));
        lines.Add(Format("AutoSaveLayout=%d", {flag(options_.Contains(soSaveLayout))}));
    }
    grid_->GetColumns()->GetSettings(lines);
    if (options_.Contains(soOrderFields))
        lines.Add(QStringLiteral("OrderFields=") + grid_->GetOrderFields());
    if (options_.Contains(soLinesCount))
        lines.Add(Format("LinesCount=%d", {grid_->GetLinesCount()}));
    if (options_.Contains(soMultiSelect))
        lines.Add(Format("MultiSelect=%d", {flag(grid_->GetOptions().Contains(dgMultiSelect))}));
    if (options_.Contains(soSelectedRow))
        lines.Add(Format("SelectedRow=%d", {flag(grid_->GetDrawingOptions().Contains(gdoSelectedRow))}));
    if (options_.Contains(soStripedRows))
        lines.Add(Format("StripedRows=%d", {flag(grid_->GetDrawingOptions().Contains(gdoStripedRows))}));
    TQDBGridFilter *filter = grid_->GetFilterGrid();
    if (options_.Contains(soAutoFilter))
        lines.Add(Format("AutoFilter=%d", {flag(filter->GetAutoFilter())}));
    if (options_.Contains(soFiltered))
        lines.Add(Format("Filtered=%d", {flag(filter->GetFiltered())}));
    if (options_.Contains(soFilters))
        filter->GetFilterLines(lines);
    lines.EndUpdate();
}

TStrings *TQDBGridSettings::GetLayout()
{
    buildLayout();
    if (grid_->OnLayout)
        grid_->OnLayout(grid_, layout_, false);
    return layout_;
}

void TQDBGridSettings::SetLayout(const TStrings *value)
{
    if (value && value != layout_)
        layout_->Assign(*value);
    const TStrings &lines = *layout_;
    WithOrderUpdate(grid_, [&] {
        grid_->GetColumns()->ApplySettings(lines);
        if (options_.Contains(soOrderFields) && lines.IndexOfName(QStringLiteral("OrderFields")) >= 0)
            grid_->SetOrderFields(lines.Values(QStringLiteral("OrderFields")));
    });
    if (options_.Contains(soLinesCount))
        grid_->SetLinesCount(StrToIntDef(lines.Values(QStringLiteral("LinesCount")), grid_->GetLinesCount()));
    if (options_.Contains(soMultiSelect)) {
        TQDBGridOptions options = grid_->GetOptions();
        if (readFlag(lines, QStringLiteral("MultiSelect"), options.Contains(dgMultiSelect)))
            options.Include(dgMultiSelect);
        else
            options.Exclude(dgMultiSelect);
        grid_->SetOptions(options);
    }
    TGridDrawingOptions drawing = grid_->GetDrawingOptions();
    auto drawingFlag = [&](TQSettingsOption option, const QString &name, TGridDrawingOption which) {
        if (!options_.Contains(option))
            return;
        if (readFlag(lines, name, drawing.Contains(which)))
            drawing.Include(which);
        else
            drawing.Exclude(which);
    };
    drawingFlag(soSelectedRow, QStringLiteral("SelectedRow"), gdoSelectedRow);
    drawingFlag(soStripedRows, QStringLiteral("StripedRows"), gdoStripedRows);
    grid_->SetDrawingOptions(drawing);

    TQDBGridFilter *filter = grid_->GetFilterGrid();
    if (options_.Contains(soAutoFilter))
        filter->SetAutoFilter(readFlag(lines, QStringLiteral("AutoFilter"), filter->GetAutoFilter()));
    std::optional<bool> filtered;
    if (options_.Contains(soFiltered))
        filtered = readFlag(lines, QStringLiteral("Filtered"), filter->GetFiltered());
    // Both in one go: the data set is filtered once.
    if (options_.Contains(soFilters) && lines.IndexOfName(QStringLiteral("Filters")) >= 0)
        filter->SetFilterLines(lines, filtered);
    else if (filtered)
        filter->SetFiltered(*filtered);
    if (grid_->OnLayout)
        grid_->OnLayout(grid_, layout_, true);
}

// ---- the store ----

void TQDBGridSettings::ReadLayout(TCustomIniFile *ini)
{
    layout_->Clear();
    const QString section = GetSection();
    if (section.isEmpty())
        return;
    withStore(ini, [&](TCustomIniFile &store) {
        if (store.SectionExists(section))
            store.ReadSectionValues(section, *layout_);
    });
}

void TQDBGridSettings::StoreLayout(TCustomIniFile *ini)
{
    const QString section = GetSection();
    if (section.isEmpty())
        return;
    const bool own = !ini;
    withStore(ini, [&](TCustomIniFile &store) {
        // Our own file is written once, at the end: a failure leaves it as it was.
        auto *file = own ? dynamic_cast<TIniFile *>(&store) : nullptr;
        if (file)
            file->SetCacheUpdates(true);
        try {
            if (store.SectionExists(section))
                store.EraseSection(section);
            for (int i = 0; i < layout_->Count(); ++i) {
                const QString line = layout_->Get(i);
                const int eq = line.indexOf(QLatin1Char('='));
                if (eq > 0)
                    store.WriteString(section, line.left(eq), line.mid(eq + 1));
            }
            store.UpdateFile();
        } catch (...) {
            if (file)
                file->DiscardUpdates();
            throw;
        }
    });
}

void TQDBGridSettings::LoadLayout(TCustomIniFile *ini)
{
    ReadLayout(ini);
    ApplyLayout();
}

void TQDBGridSettings::SaveLayout(TCustomIniFile *ini)
{
    GetLayout();
    StoreLayout(ini);
}

void TQDBGridSettings::EraseLayout(TCustomIniFile *ini)
{
    const QString section = GetSection();
    if (section.isEmpty())
        return;
    withStore(ini, [&](TCustomIniFile &store) {
        if (store.SectionExists(section)) {
            store.EraseSection(section);
            store.UpdateFile();
        }
    });
}

bool TQDBGridSettings::LayoutExists(TCustomIniFile *ini)
{
    const QString section = GetSection();
    bool exists = false;
    if (!section.isEmpty())
        withStore(ini, [&](TCustomIniFile &store) { exists = store.SectionExists(section); });
    return exists;
}

void TQDBGridSettings::AutoLoadLayout()
{
    if (grid_->IsDesigning())
        return;
    if (options_.Contains(soUserSettings)) {
        ReadLayout();
        const TStrings &lines = *layout_;
        auto userSwitch = [&](TQSettingsOption option, const QString &name) {
            const bool on = StrToIntDef(lines.Values(name), flag(options_.Contains(option))) != 0;
            SwitchOptions({option}, on);
        };
        userSwitch(soLoadLayout, QStringLiteral("AutoLoadLayout"));
        userSwitch(soSaveLayout, QStringLiteral("AutoSaveLayout"));
        if (options_.Contains(soLoadLayout))
            ApplyLayout();
    } else if (options_.Contains(soLoadLayout)) {
        LoadLayout();
    }
}

void TQDBGridSettings::AutoSaveLayout()
{
    if (grid_->IsDesigning())
        return;
    if (options_.Contains(soUserSettings) && !options_.Contains(soSaveLayout)) {
        // Only the user's two switches change; the layout stored stays as it was.
        ReadLayout();
        layout_->SetValues(QStringLiteral("AutoLoadLayout"), QString::number(flag(options_.Contains(soLoadLayout))));
        layout_->SetValues(QStringLiteral("AutoSaveLayout"), QString::number(flag(options_.Contains(soSaveLayout))));
        StoreLayout();
    } else if (options_.Contains(soSaveLayout)) {
        SaveLayout();
    }
}

// ---- the grid's moments ----

void TQCustomDBGrid::settingsActivated()
{
    if (d_->settings->GetActive() && !d_->layoutLoaded && DataLink()->Active() && !d_->destroying) {
        d_->layoutLoaded = true;
        autoLoadLayout();
    }
}

void TQCustomDBGrid::autoLoadLayout()
{
    try {
        d_->settings->AutoLoadLayout();
    } catch (const Exception &e) {
        MessageDlg(QCoreApplication::translate("qdb", "The saved layout of the grid could not be loaded: %1").arg(e.Message()),
                   mtWarning, {mbOK});
    }
}

void TQCustomDBGrid::autoSaveLayout()
{
    try {
        d_->settings->AutoSaveLayout();
    } catch (const Exception &e) {
        MessageDlg(QCoreApplication::translate("qdb", "The layout of the grid could not be saved: %1").arg(e.Message()),
                   mtWarning, {mbOK});
    }
}

} // namespace qdb
