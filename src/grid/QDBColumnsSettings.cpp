// The columns' part of a saved grid layout.

#include "QDBColumns.h"
#include "QDBGrid.h"
#include "QDBGridsOrderText.h"

#include "platform/rtl/Brackets.h"
#include "platform/rtl/Conversions.h"
#include "platform/rtl/Format.h"
#include "platform/rtl/Strings.h"

#include <cmath>

namespace qdb {

QString &ColumnSettingsSeparator()
{
    static QString separator = QStringLiteral(",");
    return separator;
}

namespace {

int flag(bool on)
{
    return on ? 1 : 0;
}

// The next item of a column line as a flag; a missing or unreadable item keeps the current one.
bool scanFlag(QString &line, bool current)
{
    return StrToIntDef(ScanStr(line, ColumnSettingsSeparator()), flag(current)) == 1;
}

} // namespace

void TQDBGridColumns::GetSettings(TStrings &layout) const
{
    const QString sep = ColumnSettingsSeparator();
    const QString columnLine = QStringLiteral("Column%d=%s") + sep + QStringLiteral("%d") + sep + QStringLiteral("%d")
                               + sep + QStringLiteral("%d") + sep + QStringLiteral("%d");
    layout.Add(Format("Columns=%d", {Count()}));
    for (int i = 0; i < Count(); ++i) {
        const TQColumn *column = Items(i);
        layout.Add(Format(columnLine, {i + 1, column->GetFieldName(), column->GetWidthBase(),
                                       flag(column->GetVisible()), flag(column->GetExpanded()),
                                       flag(column->GetReport()->IsPrinted())}));
    }
    if (grid_ && grid_->GetSettingsOptions().Contains(soStretchMode))
        layout.Add(Format("StretchMode=%d", {flag(grid_->GetStretchMode())}));
    layout.Add(Format("CurrentPPI=%d", {grid_ ? grid_->CurrentPPI() : 96}));
}

void TQDBGridColumns::ApplySettings(const TStrings &layout)
{
    const QString sep = ColumnSettingsSeparator();
    const int current = grid_ ? grid_->CurrentPPI() : 96;
    int saved = StrToIntDef(layout.Values(QStringLiteral("CurrentPPI")), current);
    if (saved <= 0)
        saved = current;
    const int count = StrToIntDef(layout.Values(QStringLiteral("Columns")), 0);
    // A width given to a column the grid made goes to its field, whose change of layout
    // would make the columns again under our hands: it waits until all lines are read.
    const ControlsDisabler waitForLayout(grid_ ? grid_->DataLink()->DataSet() : nullptr);
    CollectionUpdateGuard update(*this);
    for (int i = 1; i <= count; ++i) {
        QString line = layout.Values(QStringLiteral("Column") + QString::number(i));
        TQColumn *column = FindColumn(ScanStr(line, sep), i - 1);
        if (!column)
            continue; // the field is gone: its line is dropped
        column->SetIndex(i - 1);
        const int base = StrToIntDef(ScanStr(line, sep), column->GetWidthBase());
        column->SetWidthBase(int(std::lround(double(base) * current / saved)));
        column->SetVisible(scanFlag(line, column->GetVisible()));
        column->SetExpanded(scanFlag(line, column->GetExpanded()));
        column->GetReport()->Visible = scanFlag(line, column->GetReport()->Visible);
    }
    if (grid_ && grid_->GetSettingsOptions().Contains(soStretchMode))
        grid_->SetStretchMode(
            StrToIntDef(layout.Values(QStringLiteral("StretchMode")), flag(grid_->GetStretchMode())) == 1);
}

} // namespace qdb
