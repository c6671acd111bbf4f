// A form drawn in Designer with the published widgets, compiled by uic: the code uic writes
// builds, makes each widget and sets the properties the form gives them.

#include "ui_OrdersForm.h"

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
    EXPECT_TRUE(ui.dbNavigator->Flat());
    EXPECT_TRUE(ui.dbRadioGroup->CheckBox());
    const QList<QWidget *> made{ui.dbNavigator, ui.dbGrid, ui.dbEditor, ui.dbColumn, ui.dbText, ui.dbCheckBox, ui.dbRadioGroup};
    for (QWidget *w : made) {
        EXPECT_EQ(w->parentWidget(), &form);
        // Nothing the form set went astray as a property of a name the class does not have.
        EXPECT_TRUE(w->dynamicPropertyNames().isEmpty()) << w->objectName().toStdString();
    }
}
