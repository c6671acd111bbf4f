#include "QDBGrid.h"

#include "platform/rtl/Exceptions.h"

#include <QBuffer>
#include <QtDebug>

namespace qdb {

using namespace QDBGridFlags;

QDBGridFlags::TQDBGridOptions TQDBGrid::optionFlags() const
{
    return ToFlags<QDBGridFlags::TQDBGridOptions>(GetOptions());
}

void TQDBGrid::setOptionFlags(QDBGridFlags::TQDBGridOptions flags)
{
    SetOptions(FromFlags<qdb::TQDBGridOptions>(flags));
}

QDBGridFlags::TQDBGridOptionsEx TQDBGrid::optionExFlags() const
{
    return ToFlags<QDBGridFlags::TQDBGridOptionsEx>(GetOptionsEx());
}

void TQDBGrid::setOptionExFlags(QDBGridFlags::TQDBGridOptionsEx flags)
{
    SetOptionsEx(FromFlags<qdb::TQDBGridOptionsEx>(flags));
}

QDBGridFlags::TQDBGridOptionsExt TQDBGrid::optionExtFlags() const
{
    return ToFlags<QDBGridFlags::TQDBGridOptionsExt>(GetOptionsExt());
}

void TQDBGrid::setOptionExtFlags(QDBGridFlags::TQDBGridOptionsExt flags)
{
    SetOptionsExt(FromFlags<qdb::TQDBGridOptionsExt>(flags));
}

QDBGridFlags::TGridDrawingOptions TQDBGrid::drawingFlags() const
{
    return ToFlags<QDBGridFlags::TGridDrawingOptions>(GetDrawingOptions());
}

void TQDBGrid::setDrawingFlags(QDBGridFlags::TGridDrawingOptions flags)
{
    SetDrawingOptions(FromFlags<qdb::TGridDrawingOptions>(flags));
}

QDBGridFlags::TMultiSelections TQDBGrid::multiSelectFlags() const
{
    return ToFlags<QDBGridFlags::TMultiSelections>(GetMultiSelectOptions());
}

void TQDBGrid::setMultiSelectFlags(QDBGridFlags::TMultiSelections flags)
{
    SetMultiSelectOptions(FromFlags<qdb::TMultiSelections>(flags));
}

QString TQDBGrid::columnsText() const
{
    if (GetColumns()->State() != csCustomized)
        return {};
    QByteArray text;
    QBuffer out(&text);
    out.open(QIODevice::WriteOnly);
    GetColumns()->SaveToStream(out);
    return QString::fromUtf8(text);
}

void TQDBGrid::setColumnsText(const QString &text)
{
    if (text.trimmed().isEmpty()) {
        GetColumns()->SetState(csDefault);
        return;
    }
    QByteArray bytes = text.toUtf8();
    QBuffer in(&bytes);
    in.open(QIODevice::ReadOnly);
    try {
        GetColumns()->LoadFromStream(in);
    } catch (const Exception &e) {
        qWarning().noquote() << objectName() << QStringLiteral("columns:") << e.Message();
    }
}

QColor TQDBGrid::qtColorOf(TColor color) const
{
    return ColorToQColor(color, palette());
}

TColor TQDBGrid::colorOf(const QColor &color)
{
    return color.isValid() ? QColorToColor(color) : clDefault;
}

} // namespace qdb
