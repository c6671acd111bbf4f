// A form drawn in Designer with the published widgets, compiled by uic: the code uic writes
// builds, makes each widget and sets the properties the form gives them, the option sets and
// colours through the grid's Qt-typed face.

#include "ui_OrdersForm.h"

#include "dialogs/QDBColumnsEditor.h"
#include "platform/rtl/Streaming.h"

#include <QJsonObject>
#include <QMetaEnum>
#include <QTableWidget>

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
    ASSERT_EQ(ui.dbGrid->GetColumns()->Count(), 2);
    EXPECT_EQ(ui.dbGrid->GetColumns()->Items(1)->GetTitle()->GetCaption(), QStringLiteral("Quantity"));
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

TEST(DesignerForm, TheColumnsEditorDefinesColumnsWithoutADataSet)
{
    TQDBGrid grid;
    {
        TQDBColumnsEditor editor(&grid);
        editor.AddRow(QStringLiteral("name"));
        editor.AddRow(QStringLiteral("qty"));
        editor.AddRow(QStringLiteral("price"));
        editor.AddRow(QString()); // left blank: nothing
        QTableWidget *t = editor.Table();
        t->item(1, 1)->setText(QStringLiteral("Quantity"));
        t->item(1, 2)->setText(QStringLiteral("Sales"));
        t->item(2, 2)->setText(QStringLiteral("Sales"));
        t->item(2, 3)->setData(Qt::EditRole, 90);
        t->item(0, 4)->setCheckState(Qt::Unchecked);
        editor.MoveRow(2, 1);
        editor.accept();
    }
    TQDBGridColumns *columns = grid.GetColumns();
    ASSERT_EQ(columns->Count(), 3);
    EXPECT_EQ(columns->Items(1)->GetFieldName(), QStringLiteral("price"));
    EXPECT_EQ(columns->Items(1)->GetWidth(), 90);
    EXPECT_EQ(columns->Items(2)->GetTitle()->GetCaption(), QStringLiteral("Quantity"));
    EXPECT_EQ(columns->Items(2)->GetTitle()->Header(), QStringLiteral("Sales"));
    EXPECT_FALSE(columns->Items(0)->GetVisible());

    // The form keeps them as text; another grid made from it has the same columns.
    const QString text = grid.property("columns").toString();
    ASSERT_FALSE(text.isEmpty());
    TQDBGrid copy;
    copy.setProperty("columns", text);
    EXPECT_EQ(copy.property("columns").toString(), text);
    copy.setProperty("columns", QStringLiteral("{ not a column file"));
    EXPECT_EQ(copy.GetColumns()->Count(), 3); // left as they were

    // Cancel changes nothing; the editor opens on the columns there are.
    TQDBColumnsEditor again(&grid);
    EXPECT_EQ(again.Table()->rowCount(), 3);
    again.Table()->removeRow(0);
    again.reject();
    EXPECT_EQ(grid.GetColumns()->Count(), 3);
}
