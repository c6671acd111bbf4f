// A form drawn in Designer with the published widgets, compiled by uic: the code uic writes
// builds, makes each widget and sets the properties the form gives them, the option sets and
// colours through the grid's Qt-typed face.

#include "ui_OrdersForm.h"

#include "platform/rtl/Streaming.h"

#include <QJsonObject>
#include <QMetaEnum>

#include <gtest/gtest.h>

using namespace qdb;

TEST(DesignerForm, UicCodeMakesTheWidgetsWithTheirProperties)
{
    QWidget form;
    Ui::OrdersForm ui;
    ui.setupUi(&form);

    EXPECT_EQ(ui.dbGrid->GetKeyFields(), QStringLiteral("id"));
    EXPECT_TRUE(ui.dbGrid->GetReadOnly());
    EXPECT_EQ(ui.dbGrid->GetFixedStyle(), QDBGridTypes::fsFlat);
    EXPECT_EQ(ui.dbGrid->GetLinesCount(), 2);
    EXPECT_EQ(ui.dbGrid->GetOptions(), TQDBGridOptions({dgTitles, dgIndicator, dgMultiSelect}));
    EXPECT_EQ(ui.dbGrid->GetDrawingOptions(), TGridDrawingOptions({gdoStripedRows}));
    EXPECT_EQ(ui.dbGrid->GetStripeColor(), TColor(0xF0FAFF));
    EXPECT_TRUE(ui.dbNavigator->Flat());
    EXPECT_EQ(ui.dbNavigator->VisibleButtons(), TNavButtonSet({nbFirst, nbLast, nbRefresh}));
    EXPECT_EQ(ui.dbEditor->GetListOptions(), TQListOptions({loAutoComplete, loShowToday}));
    EXPECT_EQ(ui.dbRadioGroup->Gradient().StartColor, QColor(10, 20, 30));
    EXPECT_EQ(ui.dbRadioGroup->Gradient().Direction, Qt::Horizontal);
    EXPECT_TRUE(ui.dbRadioGroup->CheckBox());
    const QList<QWidget *> made{ui.dbNavigator, ui.dbGrid, ui.dbEditor, ui.dbColumn, ui.dbText, ui.dbCheckBox, ui.dbRadioGroup};
    for (QWidget *w : made) {
        EXPECT_EQ(w->parentWidget(), &form);
        // Nothing the form set went astray as a property of a name the class does not have.
        EXPECT_TRUE(w->dynamicPropertyNames().isEmpty()) << w->objectName().toStdString();
    }
}

namespace {

QStringList keys(const QMetaEnum &e)
{
    QStringList names;
    for (int i = 0; i < e.keyCount(); ++i)
        names << QString::fromLatin1(e.key(i));
    return names;
}

} // namespace

TEST(DesignerForm, TheQtTypedFaceNamesEveryOptionAndStaysOutOfStreams)
{
    EXPECT_EQ(keys(QMetaEnum::fromType<QDBGridFlags::TQDBGridOptions>()), keys(QMetaEnum::fromType<TQDBGridOption>()));
    EXPECT_EQ(keys(QMetaEnum::fromType<QDBGridFlags::TQDBGridOptionsEx>()), keys(QMetaEnum::fromType<TQDBGridOptionEx>()));
    EXPECT_EQ(keys(QMetaEnum::fromType<QDBGridFlags::TQDBGridOptionsExt>()), keys(QMetaEnum::fromType<TQDBGridOptionExt>()));
    EXPECT_EQ(keys(QMetaEnum::fromType<QDBGridFlags::TGridDrawingOptions>()), keys(QMetaEnum::fromType<TGridDrawingOption>()));
    EXPECT_EQ(keys(QMetaEnum::fromType<QDBGridFlags::TMultiSelections>()), keys(QMetaEnum::fromType<TMultiSelection>()));
    EXPECT_EQ(keys(QMetaEnum::fromType<QDBGridFlags::TQListOptions>()), keys(QMetaEnum::fromType<TQListOption>()));
    EXPECT_EQ(keys(QMetaEnum::fromType<QDBGridFlags::TQPickOptions>()), keys(QMetaEnum::fromType<TQPickOption>()));
    EXPECT_EQ(keys(QMetaEnum::fromType<QDBNavFlags::TNavButtonSet>()), keys(QMetaEnum::fromType<TNavigateBtn>()));

    TQDBGrid grid;
    grid.SetStripeColor(clWindow); // a system colour: the face shows what it paints with
    EXPECT_EQ(grid.property("stripeColor").value<QColor>(), grid.palette().color(QPalette::Base));
    grid.setProperty("optionsEx", QVariant::fromValue(QDBGridFlags::TQDBGridOptionsEx(QDBGridFlags::dgTotalFooter)));
    EXPECT_EQ(grid.GetOptionsEx(), TQDBGridOptionsEx({dgTotalFooter}));
    const QJsonObject json = WriteComponent(&grid);
    for (const char *face : {"stripeColor", "optionsEx", "options", "color", "drawingOptions"})
        EXPECT_FALSE(json.contains(QLatin1String(face))) << face;
    TQDBGrid copy;
    ReadComponent(&copy, json);
    EXPECT_EQ(copy.GetStripeColor(), clWindow); // still the system colour, not the one it resolved to
}
