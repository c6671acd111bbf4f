#include "grid/QDBColumns.h"

#include "TestSupport.h"

#include "platform/rtl/Streaming.h"

#include <QJsonObject>
#include <QMenu>

#include <gtest/gtest.h>

using namespace qdb;

TEST(Columns, OnlyValuesThatDifferFromTheirDefaultsAreWritten)
{
    TQColumn plain;
    plain.SetFieldName(QStringLiteral("Qty"));
    const QJsonObject untouched = WriteComponent(&plain);
    EXPECT_EQ(untouched.keys(), QStringList({"FieldName"}));

    TQColumn column;
    column.SetFieldName(QStringLiteral("Qty"));
    column.SetCheckBox(true);
    column.SetWordWrap(true); // its default: not written
    column.SetButtonStyle(cbsCalendar);
    column.SetListOptions(column.GetListOptions() + loMultiSelectList - loShowToday);
    column.SetDelimiterChar(QStringLiteral(";"));
    column.SetImageOffsetY(-3);
    column.SetTransparentColor(QColor(Qt::magenta));
    column.GetPickList()->SetText(QStringLiteral("one\ntwo"));
    column.GetTitle()->SetMarker(tmDescend);
    column.GetTitle()->SetImageIndex(0);
    column.GetTitle()->SetAutoFilters({fsFilterForm});
    column.GetReport()->TotalType = ttSum;
    const QJsonObject json = WriteComponent(&column);
    EXPECT_EQ(json.keys(), QStringList({"ButtonStyle", "CheckBox", "DelimiterChar", "FieldName", "ImageOffsetY",
                                        "ListOptions", "PickList", "Report", "Title", "TransparentColor"}));
    EXPECT_EQ(json[QStringLiteral("Title")].toObject().keys(), QStringList({"AutoFilters", "ImageIndex", "Marker", "MarkerIndex"}));
    EXPECT_EQ(json[QStringLiteral("Report")].toObject().keys(), QStringList({"TotalType"}));

    TQColumn copy;
    copy.Assign(column);
    EXPECT_EQ(WriteComponent(&copy), json);
    EXPECT_TRUE(copy.GetListOptions().Contains(loMultiSelectList));
    EXPECT_FALSE(copy.GetListOptions().Contains(loShowToday));
    EXPECT_EQ(copy.GetTitle()->GetMarker(), tmDescend);
    EXPECT_EQ(copy.GetPickList()->Count(), 2);

    // Menus are the application's: written and read by name.
    QMenu menu;
    menu.setObjectName(QStringLiteral("rowMenu"));
    copy.SetPopupMenu(&menu);
    const QJsonObject withMenu = WriteComponent(&copy);
    EXPECT_EQ(withMenu[QStringLiteral("PopupMenu")].toString(), "rowMenu");
    TQColumn read;
    ReadComponent(&read, withMenu, [&](const QString &name, const QMetaProperty &) -> QObject * {
        return name == QLatin1String("rowMenu") ? &menu : nullptr;
    });
    EXPECT_EQ(read.GetPopupMenu(), &menu);
}

TEST(Columns, PickTextFormatShapesAListValue)
{
    TQColumn column;
    EXPECT_EQ(column.FormatText(QStringLiteral("5")), QStringLiteral("5"));
    column.SetPickTextFormat(QStringLiteral("%s kg"));
    EXPECT_EQ(column.FormatText(QStringLiteral("5")), QStringLiteral("5 kg"));
    column.SetPickTextFormat(QStringLiteral("%d pieces")); // a text is no number: shown as it is
    EXPECT_EQ(column.FormatText(QStringLiteral("five")), QStringLiteral("five"));
}
