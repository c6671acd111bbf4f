// The Designer plugin as Designer meets it: loaded from its file, it offers each published
// widget, whose interface makes a widget of the class it names, with an icon and a drop-in
// snippet that names the class too, and the grid's columns editor in its task menu.

#include <QApplication>
#include <QColor>
#include <QDateTime>
#include <QFont>
#include <QIcon>
#include <QKeySequence>
#include <QPixmap>
#include <QMetaProperty>
#include <QFile>
#include <QMetaObject>
#include <QPluginLoader>
#include <QWidget>
#include <QXmlStreamReader>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerTaskMenuExtension>
#include <QtDesigner/QExtensionManager>
#include <QAction>

#include <gtest/gtest.h>

#include <memory>

namespace {

QStringList classNames(const QList<QDesignerCustomWidgetInterface *> &widgets)
{
    QStringList names;
    for (QDesignerCustomWidgetInterface *w : widgets)
        names << w->name();
    return names;
}

// The widget's own properties that Designer shows but cannot edit as what they are: types its
// property editor does not know, and colours held as numbers. Links to other objects (data
// sources, grids) are made in code, as Designer's forms do not hold such objects.
QString uneditable(const QMetaObject *meta)
{
    static const QList<QMetaType> known{
        QMetaType::fromType<bool>(),    QMetaType::fromType<int>(),     QMetaType::fromType<uint>(),
        QMetaType::fromType<double>(),  QMetaType::fromType<QString>(), QMetaType::fromType<QColor>(),
        QMetaType::fromType<QFont>(),   QMetaType::fromType<QSize>(),   QMetaType::fromType<QRect>(),
        QMetaType::fromType<QDate>(),   QMetaType::fromType<QTime>(),   QMetaType::fromType<QDateTime>(),
        QMetaType::fromType<QStringList>(), QMetaType::fromType<QPixmap>(), QMetaType::fromType<QIcon>(),
        QMetaType::fromType<QKeySequence>()};
    QStringList found;
    for (int i = QWidget::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        const QMetaProperty p = meta->property(i);
        if (!p.isDesignable() || !p.isWritable() || p.metaType().flags().testFlag(QMetaType::PointerToQObject))
            continue;
        const bool typed = p.isEnumType() || p.isFlagType() || known.contains(p.metaType());
        const bool colourNumber = p.metaType() == QMetaType::fromType<int>() && QByteArray(p.name()).endsWith("Color");
        if (!typed || colourNumber)
            found << QString::fromLatin1(p.name()) + QLatin1Char(':') + QString::fromLatin1(p.typeName());
    }
    return found.join(QLatin1Char(' '));
}

TEST(DesignerPlugin, LoadsAndMakesEachPublishedWidget)
{
    QPluginLoader loader(QStringLiteral(QDB_DESIGNER_PLUGIN));
    ASSERT_TRUE(loader.load()) << loader.errorString().toStdString();
    auto *collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
    ASSERT_NE(collection, nullptr);
    const QList<QDesignerCustomWidgetInterface *> widgets = collection->customWidgets();
    EXPECT_EQ(classNames(widgets),
              QStringList({"qdb::TQDBGrid", "qdb::TQDBEditor", "qdb::TQDBColumn", "qdb::TQDBNavigator", "qdb::TQDBText",
                           "qdb::TQDBCheckBox", "qdb::TQDBRadioGroup"}));

    // Designer's core as a plugin meets it: here only its extension manager.
    struct Core : QDesignerFormEditorInterface
    {
        using QDesignerFormEditorInterface::setExtensionManager;
    } core;
    QExtensionManager manager;
    core.setExtensionManager(&manager);
    QWidget form;
    for (QDesignerCustomWidgetInterface *w : widgets) {
        SCOPED_TRACE(w->name().toStdString());
        w->initialize(&core);
        EXPECT_TRUE(w->isInitialized());
        QWidget *made = w->createWidget(&form);
        ASSERT_NE(made, nullptr);
        // The grid's columns editor is in its task menu.
        auto *menu = qt_extension<QDesignerTaskMenuExtension *>(&manager, made);
        if (w->name() == QLatin1String("qdb::TQDBGrid")) {
            ASSERT_NE(menu, nullptr);
            ASSERT_NE(menu->preferredEditAction(), nullptr);
            EXPECT_EQ(menu->preferredEditAction()->objectName(), QStringLiteral("editColumns"));
            EXPECT_EQ(menu->taskActions().size(), 1);
        } else {
            EXPECT_EQ(menu, nullptr);
        }
        EXPECT_EQ(QString::fromLatin1(made->metaObject()->className()), w->name());
        EXPECT_EQ(made->parentWidget(), &form);
        EXPECT_EQ(uneditable(made->metaObject()).toStdString(), "");
        EXPECT_FALSE(w->icon().isNull());
        EXPECT_FALSE(w->icon().pixmap(32).toImage().isNull());
        EXPECT_FALSE(w->group().isEmpty());
        EXPECT_FALSE(w->toolTip().isEmpty());
        EXPECT_TRUE(QFile::exists(QStringLiteral(QDB_INCLUDE_DIR "/") + w->includeFile())) << w->includeFile().toStdString();

        // The snippet Designer drops on a form must be well-formed and name the class.
        QXmlStreamReader xml(w->domXml());
        QString declared;
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isStartElement() && xml.name() == QLatin1String("widget") && declared.isEmpty())
                declared = xml.attributes().value(QLatin1String("class")).toString();
        }
        EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
        EXPECT_EQ(declared, w->name());
    }
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
